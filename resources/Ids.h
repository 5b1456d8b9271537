#ifndef VAK_RESOURCES_IDS_H
#define VAK_RESOURCES_IDS_H

/* Identifiers of the library's texts. Read by the compiler and by the resource compiler, so: plain macros.
   Ranges: 1000 paths, 1100 file kinds, 1200 load/save, 1300 dates and sizes, 1400 exceptions,
   1500 tags, 1600 batches, 1700 zip archives, 1800 fields of dialogs, 1900 keys, 5260 colours, 5282 and 5302
   truth values, 0xF100 the platform's own file prompts. */

/* 1000: paths */
#define IDS_NAME_EMPTY 1000
#define IDS_NAME_BAD_CHARACTERS 1001 /* one argument: the double quote, which the texts cannot hold */
#define IDS_NAME_BAD_SEPARATORS 1002 /* the end of the text before, for names without a path */
#define IDS_PATH_NO_ROOT 1003
#define IDS_ASK_FOR_REPLACE 1004 /* one argument: the path */

/* 1100: file kinds */
#define IDS_FILTER_ALL_KINDS 1100
#define IDS_FILTER_ALL_FILES 1101

/* 1200: load/save */
#define IDS_IO_LOADED 1200
#define IDS_IO_SAVED 1201
#define IDS_IO_OPEN_ERROR 1202
#define IDS_IO_UNKNOWN_TYPE 1203
#define IDS_IO_BAD_FORMAT 1204
#define IDS_IO_NO_MEMORY 1205
#define IDS_IO_DISK_FULL 1206
#define IDS_IO_ACCESS_DENIED 1207
#define IDS_IO_NOTHING_TO_SAVE 1208
#define IDS_IO_UNSUPPORTED_OPTIONS 1209
#define IDS_IO_EMPTY 1210
#define IDS_IO_ABORTED 1211
#define IDS_IO_UNKNOWN_ERROR 1212
#define IDS_PLUGIN_VERSION 1220
#define IDS_PLUGIN_NOT_A_LIBRARY 1221
#define IDS_PLUGIN_NO_VERSION 1222
#define IDS_PLUGIN_WRONG_VERSION 1223
#define IDS_PLUGIN_NO_ENTRY_POINT 1224
#define IDS_PLUGIN_LOAD_FAILED 1225
#define IDS_PLUGIN_DECLARED_NOTHING 1226
#define IDS_PLUGIN_THREW 1227
#define IDS_PLUGIN_FREED 1228
#define IDS_LOG_LOADING 1240
#define IDS_LOG_SAVING 1241
#define IDS_LOG_WARNING 1242
#define IDS_LOG_ERROR 1243
#define IDS_SELECT_COUNT 1244

/* 1300: dates and sizes */
#define IDS_DATE_SUNDAY 1300    /* the other weekdays follow */
#define IDS_DATE_JANUARY 1310   /* the other months follow */
#define IDS_DATE_FIRST_DAY 1325 /* the first day of a month within a long date */
#define IDS_SIZE_NO_BYTES 1329
#define IDS_SIZE_BYTE 1330
#define IDS_SIZE_BYTES 1331
#define IDS_SIZE_KILO 1332 /* the larger units follow, up to: */
#define IDS_SIZE_EXA 1337
#define IDS_SIZE_DECIMAL_MARK 1338

/* 1400: exceptions */
#define IDS_NO_ERROR_MESSAGE 1400
#define IDS_OUT_OF_MEMORY 1401
#define IDS_NOT_SUPPORTED 1402
#define IDS_RESOURCE_UNAVAILABLE 1403
#define IDS_STOPPED_BY_USER 1404
#define IDS_INVALID_ARGUMENT 1405
#define IDS_NAMELESS_FILE 1409
/* one argument: the file's name; in the order of CFileException's causes */
#define IDS_FILE_NONE 1410
#define IDS_FILE_GENERIC 1411
#define IDS_FILE_NOT_FOUND 1412
#define IDS_FILE_BAD_PATH 1413
#define IDS_FILE_TOO_MANY_OPEN 1414
#define IDS_FILE_ACCESS_DENIED 1415
#define IDS_FILE_INVALID 1416
#define IDS_FILE_REMOVE_CURRENT_DIR 1417
#define IDS_FILE_DIRECTORY_FULL 1418
#define IDS_FILE_BAD_SEEK 1419
#define IDS_FILE_HARD_IO 1420
#define IDS_FILE_SHARING 1421
#define IDS_FILE_LOCK 1422
#define IDS_FILE_DISK_FULL 1423
#define IDS_FILE_END 1424
/* one argument: the file's name; in the order of CArchiveException's causes */
#define IDS_ARCHIVE_NONE 1430
#define IDS_ARCHIVE_GENERIC 1431
#define IDS_ARCHIVE_READ_ONLY 1432
#define IDS_ARCHIVE_END 1433
#define IDS_ARCHIVE_WRITE_ONLY 1434
#define IDS_ARCHIVE_BAD_INDEX 1435
#define IDS_ARCHIVE_BAD_CLASS 1436
#define IDS_ARCHIVE_BAD_SCHEMA 1437
#define IDS_ARCHIVE_BUFFER_FULL 1438

/* 5260: colours; the number is part of the interface */
#define IDS_COLOR_TEXT 5260 /* three arguments: red, green, blue */

/* 1500: tags */
#define IDS_TAG_PARAMETER 1500 /* the friendly names of the parameters, in their table's order */
#define IDS_TAG_EXAMPLE 1520   /* and their examples; some parameters have none */
#define IDS_FALSE 5282
#define IDS_TRUE 5302

/* 1560: conditional tags */
#define IDS_TAG_CONDITIONALS 1560 /* their class */
#define IDS_TAG_IF_EXIST 1561
#define IDS_TAG_END_IF_EXIST 1562

/* 1580: the insert-tag menu */
#define IDS_TAG_NO_CRITERIA 1580
#define IDS_TAG_ALL 1581
#define IDS_TAG_ALL_WRITABLE 1582

/* 1600: batches */
#define IDS_BATCH_RESULTS 1600 /* the destination entry that a batch begins with */
#define IDS_BATCH_WANTS_RELATIVE 1601
#define IDS_BATCH_WANTS_FOLDER 1602
/* where the files are created; the argument is the folder or the entry, the second the source folder */
#define IDS_BATCH_IN_FOLDER 1610
#define IDS_BATCH_BESIDE_SOURCES 1611 /* no argument */
#define IDS_BATCH_IN_FOLDER_TREE 1612
#define IDS_BATCH_IN_SUBFOLDER_OF 1613       /* two arguments */
#define IDS_BATCH_IN_SUBFOLDERS_OF_TREE 1614 /* two arguments */
#define IDS_BATCH_IN_SUBFOLDERS 1615

/* 1700: zip archives; two arguments: the archive's path and the entry's name; in the order of CZipException's
   causes */
#define IDS_ZIP_NONE 1700 /* the other causes follow */

/* 1800: fields of dialogs; the arguments of what is wrong with one are the ends of its range */
#define IDS_FIELDS_WRONG 1800 /* what the lines of the fields follow */
#define IDS_FIELD_LINE 1801   /* two arguments: the field's name and what is wrong */
#define IDS_FIELD_NOT_AN_INTEGER 1802
#define IDS_FIELD_NOT_A_NUMBER 1803
#define IDS_FIELD_OUT_OF_RANGE 1804
#define IDS_FIELD_TOO_SMALL 1805
#define IDS_FIELD_TOO_LARGE 1806
#define IDS_FIELD_EMPTY 1807
#define IDS_FIELD_TOO_SHORT 1808
#define IDS_FIELD_TOO_LONG 1809
#define IDS_FIELD_NO_CHOICE 1810
#define IDS_FIELD_NOT_A_COLOR 1811

/* 1900: keys */
#define IDS_KEY_NAME 1900 /* the keys with a name of their own, in their table's order */
#define IDS_KEY_ENTER 1906
#define IDS_KEY_DECIMAL 1939
#define IDS_KEY_OF_NUMBER_PAD 1940 /* one argument: what the key is called there */

/* 0x7000: dialogs. The numbers below are for those of hosts and plug-ins, which must not be mistaken for
 * these. */
#define IDD_IO_LOG 0x7000
#define IDD_SELECT_FILES 0x7001

/* 200: their controls */
#define IDC_IO_LOG_ICON 201
#define IDC_IO_LOG_TEXT 202
#define IDC_SELECT_FILES_FOLDER 211
#define IDC_SELECT_FILES_LIST 212
#define IDC_SELECT_FILES_ALL 213
#define IDC_SELECT_FILES_COUNT 214

/* 0xF100: file prompts, one argument: the file's name */
#define VAK_PROMPT_SAVE_FAILED 0xF100
#define VAK_PROMPT_OPEN_FAILED 0xF101
#define VAK_PROMPT_INVALID_FORMAT 0xF120
#define VAK_PROMPT_INVALID_PATH 0xF121
#define VAK_PROMPT_DISK_FULL 0xF122
#define VAK_PROMPT_NO_READ_ACCESS 0xF123
#define VAK_PROMPT_NO_WRITE_ACCESS 0xF124

#endif
