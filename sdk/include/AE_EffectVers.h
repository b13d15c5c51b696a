// Effect interface version the resources of this header release declare.
#ifndef AE_EFFECTVERS_H
#define AE_EFFECTVERS_H

#define PF_PLUG_IN_VERSION 13
#define PF_PLUG_IN_SUBVERS 28

#endif
