// SPDX-License-Identifier: MIT
// The public header by itself in C, with prototypes.
#define GL_GLEXT_PROTOTYPES
#include <GLES/glext_trl20.h>

void callVendorFromC(void);
void callVendorFromC(void)
{
    glFogCoordf(3.5f);
    glAlphaFactorfZEK(0.25f);
}

// Each prototype has the type that its pointer type names: an incompatible one does not compile.
int countVendorPrototypes(void);
int countVendorPrototypes(void)
{
    int count = 0;
#define PROTOTYPE(type, function) count += (type){function} != 0;
#include "ext/vendor_prototypes.def"
    return count;
}
