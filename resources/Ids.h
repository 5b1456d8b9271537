#ifndef VAK_RESOURCES_IDS_H
#define VAK_RESOURCES_IDS_H

/* Identifiers of the library's texts. Read by the compiler and by the resource compiler, so: plain macros.
   Ranges: 1000 paths, 1100 file kinds, 1200 load/save, 1300 dates and sizes, 1400 exceptions,
   0xF100 the platform's own file prompts. */

/* 1000: paths */

/* 1100: file kinds */

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

/* dialogs and their controls */
#define IDD_IO_LOG 200
#define IDC_IO_LOG_ICON 201
#define IDC_IO_LOG_TEXT 202
#define IDD_SELECT_FILES 210
#define IDC_SELECT_FILES_FOLDER 211
#define IDC_SELECT_FILES_LIST 212
#define IDC_SELECT_FILES_ALL 213
#define IDC_SELECT_FILES_COUNT 214

/* 1300: dates and sizes */

/* 1400: exceptions */

/* 0xF100: file prompts, one argument: the file's name */

#endif
