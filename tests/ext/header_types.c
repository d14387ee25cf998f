// SPDX-License-Identifier: MIT
// The public header by itself in C, without prototypes: the names stay free.
#include <GLES/glext_trl20.h>

_Static_assert(GL_FOG_COORDINATE_SOURCE_QRN == 0x8450, "");
_Static_assert(GL_FOG_COORDINATE_QRN == 0x8451, "");
_Static_assert(GL_FRAGMENT_DEPTH_QRN == 0x8452, "");
_Static_assert(GL_ALPHA_FACTOR_ZEK == 0x8C9F, "");
_Static_assert(GL_TEXTURE_WIDTH_QRN == 0x8BD2, "");
_Static_assert(GL_TEXTURE_HEIGHT_QRN == 0x8BD3, "");
_Static_assert(GL_TEXTURE_INTERNAL_FORMAT_QRN == 0x8BD5, "");
_Static_assert(GL_ZTC_RGB_QRN == 0x8C92, "");
_Static_assert(GL_ZTC_RGBA_EXPLICIT_ALPHA_QRN == 0x8C93, "");
_Static_assert(GL_ZTC_RGBA_INTERPOLATED_ALPHA_QRN == 0x87EE, "");

int vendorTypesOnly(void);
int vendorTypesOnly(void)
{
    enum { glFogCoordf = 1, glBeginPerfMonitorQRN = 2 };
    PFNGLFOGCOORDFPROC loaded = 0;
    return loaded == 0 ? glFogCoordf + glBeginPerfMonitorQRN : 0;
}
