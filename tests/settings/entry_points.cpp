// SPDX-License-Identifier: MIT
#include "settings/entry_points.h"

#include "frontend/backend.h"
#include "frontend/client_api.h"
#include "math/fixed.h"
#include "math/fixed_matrix.h"
#include "math/fp_matrix.h"
#include "math/fp_scalar.h"
#include "math/fp_trig.h"
#include "math/fp_vector.h"
#include "math/matrix_classify.h"

#include <array>
#include <type_traits>

extern "C" void GL_APIENTRY glFramebufferTexture3DOES(GLenum target, GLenum attachment, GLenum textarget,
                                                      GLuint texture, GLint level, GLint zoffset);

namespace {

using List = std::vector<EntryPoint>;

template <typename T>
T argument([[maybe_unused]] uint32_t number)
{
    static std::array<uint64_t, 0x8000> zeros;
    if constexpr (std::is_pointer_v<T>) {
        zeros.fill(0);
        return reinterpret_cast<T>(zeros.data());
    } else {
        return static_cast<T>(number);
    }
}

bool isEntryPoint(const std::string &name)
{
    return name.size() > 2 && name.compare(0, 2, "gl") == 0 && name[2] >= 'A' && name[2] <= 'Z' &&
           name.find("_2_0") == std::string::npos;
}

template <typename R, typename... A>
void add(List &list, const char *name, R (*function)(A...))
{
    if (isEntryPoint(name))
        list.push_back({name, [function]([[maybe_unused]] uint32_t number) { function(argument<A>(number)...); }});
}

void add(List &list, const char *name, void (*function)(const GLfloat *, ...))
{
    list.push_back({name, [function](uint32_t number) { function(argument<const GLfloat *>(number), number); }});
}

void add(List &, const char *, void **)
{
    // a module handle
}

List collect()
{
    List list;
    // A row becomes: add(list, "glRotatef", &glRotatef);
#define EXPORT(name) add(list, #name, &name);
#define BACKEND(name, result, arguments, visibility, group, need)
#include "frontend/exports.def"
    return list;
}

} // namespace

const std::vector<EntryPoint> &exportedEntryPoints()
{
    static const List list = collect();
    return list;
}
