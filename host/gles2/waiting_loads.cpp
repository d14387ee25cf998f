// SPDX-License-Identifier: MIT
#include "waiting_loads.h"

void loadWaiting(Context *context)
{
    if (!(context->specialDraws & DRAWS_LOADED)) return;
    context->specialDraws &= ~DRAWS_LOADED;
    LinkedProgram *program = context->program;
    const WaitingLoads waiting = program->waiting;
    if (waiting.first >= waiting.end) return; // another context with the same program was faster
    program->waiting = {};
    const GatheredArray &gathered = program->gathered;
    const GLint vector = waiting.first - gathered.location;
    driver.glUniform4fv(gathered.driverLocation + vector, waiting.end - waiting.first,
                        reinterpret_cast<const GLfloat *>(gathered.held + 4 * vector));
}
