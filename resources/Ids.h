#ifndef VAK_RESOURCES_IDS_H
#define VAK_RESOURCES_IDS_H

/* Identifiers of the library's texts. Read by the compiler and by the resource compiler, so: plain macros.
   Ranges: 1000 paths, 1100 file kinds, 1200 load/save, 1300 dates and sizes, 1400 exceptions,
   0xF100 the platform's own file prompts. */

/* 1000: paths */

/* 1100: file kinds */
#define IDS_FILTER_ALL_KINDS 1100
#define IDS_FILTER_ALL_FILES 1101

/* 1200: load/save */

/* 1300: dates and sizes */
#define IDS_DATE_SUNDAY 1300    /* the other weekdays follow */
#define IDS_DATE_JANUARY 1310   /* the other months follow */
#define IDS_DATE_FIRST_DAY 1325 /* the first day of a month within a long date */
#define IDS_SIZE_NO_BYTES 1329
#define IDS_SIZE_BYTE 1330
#define IDS_SIZE_BYTES 1331
#define IDS_SIZE_KILO 1332      /* the larger units follow, up to: */
#define IDS_SIZE_EXA 1337
#define IDS_SIZE_DECIMAL_MARK 1338

/* 1400: exceptions */

/* 0xF100: file prompts, one argument: the file's name */

#endif
