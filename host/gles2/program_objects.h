// SPDX-License-Identifier: MIT
// Shaders and programs as the backend's callers see them, and the driver's programs behind them. Both have the
// backend's own names: a shader's text is compiled when a program with it is linked, since only the two texts together
// tell which version of the language they need, and a linked program outlives the program it was linked for.
#pragma once

#include "buffer_copies.h"
#include "equal_words.h"
#include "gl_api.h"
#include "group_lock.h"
#include "noted_levels.h"
#include "object_names.h"
#include "translator.h"

#include <EGL/egl.h>

#include <atomic>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

/// What a compiler or linker said.
struct BuildResult {
    bool ok = false;
    std::string log = {};
    bool loaded = false;       // of a program: not built, but loaded from a file of an earlier run
    double milliseconds = 0.0; // of a program
};

struct Context;

struct ShaderObject {
    GLuint name;
    const Context *maker; // with which it is deleted; null when that has happened
    GLenum type;          // GL_VERTEX_SHADER or GL_FRAGMENT_SHADER
    std::string source;
    std::string compiledSource; // the text at the last glCompileShader
    bool compileAsked;
    bool resultKnown; // result belongs to compiledSource
    BuildResult result;
    int attachments; // programs it is attached to
    bool deleted;    // to be freed when the last of them lets go
};

/// The kinds of values a uniform takes, one per family of load functions.
enum class UniformKind : uint8_t {
    None, // not a location of the program
    Int1,
    Int2,
    Int3,
    Int4,
    Float1,
    Float2,
    Float3,
    Float4,
    Matrix2,
    Matrix3,
    Matrix4,
};

/// One uniform location.
struct UniformSlot {
    UniformKind kind;
    UniformKind heldKind; // the same while `held` is what the driver has; None: every load goes through
    bool isArray : 1;
    bool isSampler : 1;
    bool gathered : 1;    // a place in the array of gathered uniforms: new values wait for the next draw
    int16_t element;      // index in its array; 0 for a single value
    int16_t elementsLeft; // elements from this one to the array's last; 1 for a single value
    // The value the driver has or is to get, in LinkedProgram::values. An array's later elements lie behind it, each
    // element of a gathered one, and each column of a gathered matrix, in a vector of its own.
    uint32_t *held;
};
static_assert(sizeof(UniformSlot) <= 16); // found by a shift

/// Room for held values. A uniform begins at the start of one, so that it can be compared four words at a time.
struct alignas(kHeldAlignment) HeldVector {
    uint32_t words[4];
};

/// A uniform as the application sees it; an array's name ends with "[0]".
struct ActiveUniform {
    std::string name;
    GLenum type;
    GLint elements;
    GLint location; // of the first element
};

/// The viewport's size and the line's width in a program that makes rectangles of lines, and what was last loaded.
struct LineUniforms {
    GLint viewportSizeLocation;
    GLint lineWidthLocation;
    GLfloat loadedViewportSize[2]; // pixels
    GLfloat loadedLineWidth;       // pixels
};

/// The array of gathered uniforms. Its vectors have locations of their own, which the driver does not know.
struct GatheredArray {
    GLint location;       // of the first vector; those of the others follow
    GLint driverLocation; // of the array in the driver
    GLsizei vectors;      // 0: nothing is gathered
    uint32_t *held;       // of all vectors
};

/// The vectors that hold new values from the first to the last, as locations; see waiting_loads.h. No location lies
/// between those of an empty range.
struct WaitingLoads {
    GLint first = INT32_MAX;
    GLint end = 0;
};

struct AttributeLocation {
    std::string name;
    GLint location;
};

struct ExpandedProgram;
struct ExplainedProgram;
inline constexpr int kExpandedPrograms = 2 * kExpansions; // by Expansion, without and with a logic operation

struct LinkedProgram {
    GLuint driverProgram; // 0: linking failed
    std::string key;      // texts and attribute bindings it was made from
    BuildResult result;
    int users;                         // the program object linked to it, and contexts it is in use in
    std::vector<UniformSlot> uniforms; // by location
    UniformSlot *slots;                // those of `uniforms` and their number, at hand without arithmetic
    size_t slotCount;
    std::vector<HeldVector> values;
    std::vector<ActiveUniform> activeUniforms;
    GatheredArray gathered;
    WaitingLoads waiting;
    std::vector<AttributeLocation> attributes; // the active ones
    bool keepable;                             // every uniform is remembered, so that all can be put back to zero
    bool expandsLines;                         // has the geometry shader that makes rectangles of lines
    bool plain;    // made for GLSL ES 1.00, since the driver refused the text of a higher version
    bool flatLost; // see TranslatedProgram
    bool lineCoordLost;
    bool drawsExpanded; // one of the three above: what it draws may need more than a draw of the driver's
    LineUniforms lines; // with expandsLines
    ExpandedProgram *expanded[kExpandedPrograms]; // null until a draw needs one, see findExpanded
    ExplainedProgram *explained;                  // its record; null unless TRL20_EXPLAIN is set
};

/// Indices of vertex attributes by their names.
using AttributeBindings = std::map<std::string, GLuint>;

struct ProgramObject {
    GLuint name;
    const Context *maker; // as for shaders
    ShaderObject *vertex; // attached; null when none
    ShaderObject *fragment;
    AttributeBindings attributeBindings; // take effect at the next link
    LinkedProgram *linked;               // of the last successful link; null before it
    bool linkOk;                         // of the last link
    bool validated;
    std::string log;
    int uses;     // contexts it is the program of
    bool deleted; // to be freed when the last of them lets go
};

/// Linked programs that no program object uses.
struct ProgramKeeper {
    std::list<LinkedProgram *> idle; // newest first
    std::unordered_multimap<std::string, std::list<LinkedProgram *>::iterator> byKey;
    std::vector<LinkedProgram *> refused; // not keepable; they wait for a current context, in which they are deleted
};

inline constexpr GLuint kRecentPrograms = 64; // found by name without a search

/// Contexts that share objects. Names are looked up under the lock; a linked program in use is read without it.
struct ShareGroup {
    GroupLock lock;
    std::vector<Context *> members;
    std::atomic<int> contexts; // the number of members, to be read without the lock
    bool sharesWithMachine;    // also with contexts of the machine's, so that what is left in the driver would stay
    EGLContext side;           // for work aside, see machine_context.h; none until it is needed
    GLuint lastName;           // shaders and programs have one name space
    std::unordered_map<GLuint, ShaderObject *> shaders;
    std::unordered_map<GLuint, ProgramObject *> programs;
    ProgramObject *recentPrograms[kRecentPrograms]; // found last, by the low bits of their names; null or in `programs`
    ProgramKeeper keeper;
    NotedLevels notedLevels;
    SharedNames names; // of the other objects; has a lock of its own
    bool abilitiesKnown;
    DriverAbilities abilities;
    BufferCopies copies;
};

/// Linked programs kept after their program objects are gone.
inline constexpr size_t kKeptPrograms = 256;
