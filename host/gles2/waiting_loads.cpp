// SPDX-License-Identifier: MIT
#include "waiting_loads.h"

static void loadRun(const LinkedProgram *program, GLint location, GLsizei count)
{
    const UniformSlot &slot = program->slots[location];
    const auto *values = reinterpret_cast<const GLfloat *>(slot.held);
    if (slot.kind == UniformKind::Float3)
        driver.glUniform3fv(location, count, values);
    else
        driver.glUniform4fv(location, count, values);
}

// Whether the element belongs to a run, or lengthens it by one.
static bool joins(ElementRun &run, GLint location, const UniformSlot &slot)
{
    if (location < run.location || location > run.location + run.count) return false;
    if (location < run.location + run.count) return true;
    if (slot.element == 0) return false; // the neighbour is another array's first
    ++run.count;
    return true;
}

void loadWithNextDraw(GLint location)
{
    Context *context = currentContext;
    LinkedProgram *program = context->program;
    if (context->group->contexts > 1) return loadRun(program, location, 1);
    WaitingLoads &waiting = program->waiting;
    for (int i = 0; i < waiting.count; ++i)
        if (joins(waiting.runs[i], location, program->slots[location])) return;
    if (waiting.count == WaitingLoads::kMaxRuns) loadWaiting(context);
    waiting.runs[waiting.count++] = {.location = location, .count = 1};
    context->specialDraws |= DRAWS_LOADED;
}

void forgetWaiting(Context *context)
{
    context->program->waiting.count = 0;
    context->specialDraws &= ~DRAWS_LOADED;
}

void loadWaiting(Context *context)
{
    if (!(context->specialDraws & DRAWS_LOADED)) return;
    LinkedProgram *program = context->program;
    for (int i = 0; i < program->waiting.count; ++i)
        loadRun(program, program->waiting.runs[i].location, program->waiting.runs[i].count);
    forgetWaiting(context);
}
