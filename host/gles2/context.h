// SPDX-License-Identifier: MIT
// A backend context: the machine's context, and what the wrappers remember of it so that they can leave out calls that
// change nothing.
#pragma once

#include "driver.h"
#include "object_names.h"
#include "program_objects.h"

#include <atomic>

inline constexpr int kMaxAttributes = 16; // attributes whose state is remembered; calls for others always go through
inline constexpr uint64_t kUnknownBuffer = ~uint64_t{0}; // no buffer has this name

/// One vertex attribute as the driver has it.
struct AttributeArray {
    const void *pointer; // client memory, or byte offset when buffer is not 0
    uint64_t buffer;     // kUnknownBuffer: the driver's state is not known, and the next call must go through
    GLint size;
    GLenum type;
    GLsizei strideBytes;
    GLboolean normalized;
};

struct BufferState {
    GLuint array;       // bound by the application
    GLuint driverArray; // bound in the driver; brought up to date only when a call reads it
    GLuint element;
    bool elementOld; // its name may be another buffer's by now
};

struct AttributeState {
    AttributeArray arrays[kMaxAttributes];
    std::atomic<GLuint> arraysHeld; // so many are as above: all, or 0 when another context has deleted buffers
    uint32_t enabled;               // one bit per attribute
    alignas(kHeldAlignment) GLfloat values[kMaxAttributes][4]; // current values
};

/// Capabilities as bits, see capabilities.def.
struct CapabilityState {
    uint32_t driver;  // the driver's, as it has them
    uint32_t tracked; // those the driver does not know, as the application set them
    GLenum logicOp;
};

/// Why draws need more than a jump into the driver.
enum SpecialDraws : uint8_t {
    DRAWS_EXPANDED = 1, // the driver cannot do some of them by itself, see updateSpecialDraws
    DRAWS_LOADED = 2,   // uniform loads wait for the next one
};

/// What the shortcuts of the entry points look at: calls that change nothing end there.
struct HeldState {
    BufferState buffers;
    AttributeState attributes;
    SeenNames seenTextures;
    SeenNames seenBuffers;           // these need no bind to exist
    const UniformSlot *uniformSlots; // of the program in use, by location
    uint32_t uniformCount;           // 0 without a program
    uint8_t specialDraws;            // SpecialDraws bits; 0: a draw is a jump into the driver
};

struct Context : HeldState {
    EGLContext handle;
    EGLDisplay display;
    EGLConfig config; // as given; null when none
    ShareGroup *group;
    GLenum error;   // raised here and not yet asked for; GL_NO_ERROR when none
    bool prepared;  // has been current, so that the driver could be asked
    bool current;   // on some thread
    bool destroyed; // to be freed when it is no longer current
    CapabilityState capabilities;
    void (*imagesFound)(GLenum target); // see create_info.h; may be null
    SeenNames seenRenderbuffers;
    std::set<GLuint> framebuffers; // names bound here
    ProgramObject *programObject;  // in use; null when none
    LinkedProgram *program;        // what the driver runs for it
    GLfloat lineWidth;             // pixels
    bool wideLines;                // lines that are not smooth are wider than the driver's
    bool drawsExpanded;            // with every program: for wide lines or a logic operation
    GLint viewport[4];             // pixels
};

/// The thread's current context, null when none. The initial-exec model makes it one load: every wrapper reads it.
extern constinit thread_local Context *currentContext __attribute__((tls_model("initial-exec")));

/// The same for the shortcuts, which need no test for a context: where there is none, this is a record of zeros, with
/// which every one of them takes the long way or has nothing to do. A shortcut writes only what it has found held.
extern constinit thread_local HeldState *heldState __attribute__((tls_model("initial-exec")));

/// Sets the two for the calling thread. context: null for none.
void setCurrentContext(Context *context);

/// Records an error in the current context, unless one is pending there. Without a context nothing happens.
void raiseError(GLenum error);

/// Writes a line to standard error, but no text twice in a process.
void tellOnce(const char *text);

/// Brings DRAWS_EXPANDED up to date with the line width and the logic operation.
void updateSpecialDraws(Context *context);

/// The present DRAWS_EXPANDED of a context whose program this is; null when none.
inline uint8_t expandedDraws(const Context *context, const LinkedProgram *program)
{
    return program ? (context->drawsExpanded | program->drawsExpanded) * DRAWS_EXPANDED : 0;
}

/// Gives the context the state of a new one, for as far as the wrappers remember it. The attribute and buffer state
/// needs no driver; the rest is read when the context is first current.
void initAttributes(Context *context);
void initCapabilities(Context *context);
