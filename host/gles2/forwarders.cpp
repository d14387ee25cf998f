// SPDX-License-Identifier: MIT
// Entry points that the driver answers as they are. They are exported because os_lib_getaddr finds exported names only;
// each is a single jump, since a call with the caller's own arguments needs no frame.
#include "context.h"
#include "driver.h"

// FORWARDED(glFlush, void, (void), (), CORE) becomes
//     void GL_APIENTRY glFlush(void) { return driver.glFlush(); }
#define REFUSE_CORE(name)
#define REFUSE_OPTIONAL(name)                                                                                          \
    if (!driver.name) return raiseError(GL_INVALID_OPERATION);
#define FORWARDED(name, result, parameters, arguments, need)                                                           \
    result GL_APIENTRY name parameters                                                                                 \
    {                                                                                                                  \
        REFUSE_##need(name) return driver.name arguments;                                                              \
    }
#include "driver_functions.def"

void GL_APIENTRY glReleaseShaderCompilerOES(void)
{
    driver.glReleaseShaderCompiler();
}
