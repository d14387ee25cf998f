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
#define CHECK(type, function) count += (type){function} != 0
    CHECK(PFNGLFOGCOORDFPROC, glFogCoordf);
    CHECK(PFNGLALPHAFACTORFZEKPROC, glAlphaFactorfZEK);
    CHECK(PFNGLMULTMATRIXFWITHHINTZEKPROC, glMultMatrixfWithHintZEK);
    CHECK(PFNGLLOADMATRIXFWITHHINTZEKPROC, glLoadMatrixfWithHintZEK);
    CHECK(PFNGLGETBUFFERPOINTERVZEKPROC, glGetBufferPointervZEK);
    CHECK(PFNGLGETTEXSUBIMAGEZEKPROC, glGetTexSubImageZEK);
    CHECK(PFNGLGETTEXLEVELPARAMETERIVQRNPROC, glGetTexLevelParameterivQRN);
    CHECK(PFNGLTEXOBJECTSTATEOVERRIDEIQRNPROC, glTexObjectStateOverrideiQRN);
    CHECK(PFNGLGETTEXTURESQRNPROC, glGetTexturesQRN);
    CHECK(PFNGLGETBUFFERSQRNPROC, glGetBuffersQRN);
    CHECK(PFNGLGETRENDERBUFFERSQRNPROC, glGetRenderbuffersQRN);
    CHECK(PFNGLGETFRAMEBUFFERSQRNPROC, glGetFramebuffersQRN);
    CHECK(PFNGLGETSHADERSQRNPROC, glGetShadersQRN);
    CHECK(PFNGLGETPROGRAMSQRNPROC, glGetProgramsQRN);
    CHECK(PFNGLISPROGRAMBINARYQRNPROC, glIsProgramBinaryQRN);
    CHECK(PFNGLGETPERFMONITORGROUPSQRNPROC, glGetPerfMonitorGroupsQRN);
    CHECK(PFNGLGETPERFMONITORCOUNTERSQRNPROC, glGetPerfMonitorCountersQRN);
    CHECK(PFNGLGETPERFMONITORGROUPSTRINGQRNPROC, glGetPerfMonitorGroupStringQRN);
    CHECK(PFNGLGETPERFMONITORCOUNTERSTRINGQRNPROC, glGetPerfMonitorCounterStringQRN);
    CHECK(PFNGLGETPERFMONITORCOUNTERINFOQRNPROC, glGetPerfMonitorCounterInfoQRN);
    CHECK(PFNGLGENPERFMONITORSQRNPROC, glGenPerfMonitorsQRN);
    CHECK(PFNGLDELETEPERFMONITORSQRNPROC, glDeletePerfMonitorsQRN);
    CHECK(PFNGLSELECTPERFMONITORCOUNTERSQRNPROC, glSelectPerfMonitorCountersQRN);
    CHECK(PFNGLBEGINPERFMONITORQRNPROC, glBeginPerfMonitorQRN);
    CHECK(PFNGLENDPERFMONITORQRNPROC, glEndPerfMonitorQRN);
    CHECK(PFNGLGETPERFMONITORCOUNTERDATAQRNPROC, glGetPerfMonitorCounterDataQRN);
#undef CHECK
    return count;
}
