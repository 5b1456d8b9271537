#ifndef VAK_RESOURCES_IDS_H
#define VAK_RESOURCES_IDS_H

/* Identifiers of the library's texts. Read by the compiler and by the resource compiler, so: plain macros.
   Ranges: 1000 paths, 1100 file kinds, 1200 load/save, 1300 dates and sizes, 1400 exceptions,
   0xF100 the platform's own file prompts. */

/* 1000: paths */

/* 1100: file kinds */

/* 1200: load/save */

/* 1300: dates and sizes */

/* 1400: exceptions */

/* 0xF100: file prompts, one argument: the file's name */

#endif
