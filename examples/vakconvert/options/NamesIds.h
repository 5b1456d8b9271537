#ifndef VAK_EXAMPLES_VAKCONVERT_OPTIONS_NAMESIDS_H
#define VAK_EXAMPLES_VAKCONVERT_OPTIONS_NAMESIDS_H

/* Read by the resource compiler too. */
#define IDD_NAMES 4200
#define IDC_NAME 4201
#define IDC_PLACE 4202 /* the first of three, in the order of NamePlace */
#define IDC_SUBFOLDER 4205
#define IDC_DESTINATION 4206
#define IDC_OVERWRITE 4207
#define IDC_NAME_HINT 4208
#define IDC_PLACES 4209

#endif
