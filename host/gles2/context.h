// SPDX-License-Identifier: MIT
// A backend context: the machine's context, and what the wrappers remember of it so that they can leave out calls that
// change nothing.
#pragma once

#include "driver.h"
#include "object_names.h"
#include "program_objects.h"

#include <atomic>

inline constexpr int kMaxAttributes = 16;   // attributes whose state is remembered; calls for others always go through
inline constexpr int kSeenBufferCount = 64; // buffer names remembered as bound before, by their low bits

/// One vertex attribute as the driver has it.
struct AttributeArray {
    const void *pointer; // client memory, or byte offset when buffer is not 0
    GLuint buffer;
    GLint size;
    GLenum type;
    GLsizei strideBytes;
    GLboolean normalized;
    bool known; // false: the driver's state is not known, and the next call must go through
};

struct BufferState {
    GLuint array;       // bound by the application
    GLuint driverArray; // bound in the driver; brought up to date only when a call reads it
    GLuint element;
    bool elementOld;               // its name may be another buffer's by now
    uint32_t deletedSeen;          // the group's count of deletions this context has taken notice of
    GLuint seen[kSeenBufferCount]; // a name bound before needs no bind to exist
};

struct AttributeState {
    AttributeArray arrays[kMaxAttributes];
    uint32_t enabled;                  // one bit per attribute
    GLfloat values[kMaxAttributes][4]; // current values
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

struct Context {
    EGLContext handle;
    EGLDisplay display;
    EGLConfig config; // as given; null when none
    ShareGroup *group;
    GLenum error;   // raised here and not yet asked for; GL_NO_ERROR when none
    bool prepared;  // has been current, so that the driver could be asked
    bool current;   // on some thread
    bool destroyed; // to be freed when it is no longer current
    BufferState buffers;
    AttributeState attributes;
    CapabilityState capabilities;
    void (*imagesFound)(GLenum target); // see create_info.h; may be null
    SeenNames seenTextures;
    SeenNames seenBuffers;
    SeenNames seenRenderbuffers;
    std::set<GLuint> framebuffers;   // names bound here
    ProgramObject *programObject;    // in use; null when none
    LinkedProgram *program;          // what the driver runs for it
    const UniformSlot *uniformSlots; // the program's, at hand for the loads; by location
    uint32_t uniformCount;           // 0 without a program
    uint8_t specialDraws;            // SpecialDraws bits; 0: a draw is a jump into the driver
    GLfloat lineWidth;               // pixels
    bool wideLines;                  // lines that are not smooth are wider than the driver's
    GLint viewport[4];               // pixels
};

/// The thread's current context, null when none. The initial-exec model makes it one load: every wrapper reads it.
extern constinit thread_local Context *currentContext __attribute__((tls_model("initial-exec")));

/// Records an error in the current context, unless one is pending there. Without a context nothing happens.
void raiseError(GLenum error);

/// Writes a line to standard error, but no text twice in a process.
void tellOnce(const char *text);

/// Brings DRAWS_EXPANDED up to date with the program in use, the line width and the logic operation.
void updateSpecialDraws(Context *context);

/// Gives the context the state of a new one, for as far as the wrappers remember it. The attribute and buffer state
/// needs no driver; the rest is read when the context is first current.
void initAttributes(Context *context);
void initCapabilities(Context *context);
