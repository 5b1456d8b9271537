#ifndef VAK_EXAMPLES_SDK_OPTIONSIDS_H
#define VAK_EXAMPLES_SDK_OPTIONSIDS_H

/* Read by the resource compiler too. The page's other controls, one or two an option, have the numbers from
   IDC_FIRST_OPTION on. */
#define IDD_FORMAT_OPTIONS 4000
#define IDC_NO_OPTIONS 4001
#define IDC_FIRST_OPTION 4100

#endif
