#ifndef VAKCONVERT_TAG_TEXTS_H
#define VAKCONVERT_TAG_TEXTS_H

/* The names of the tag classes, which tags know by number. Read by the compiler and by the resource compiler.
   The library's own texts, which are asked for first, have smaller numbers. */
#define IDS_CLASS_FILE 20001
#define IDS_CLASS_MODEL 20002
#define IDS_CLASS_IMAGE 20003
#define IDS_CLASS_RUN 20004
#define IDS_CLASS_RESULTS 20005

#endif
