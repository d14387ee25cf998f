// SPDX-License-Identifier: MIT
#include "support/fake_backend.h"

#include "frontend/backend.h"
#include "frontend/client_api.h"
#include "frontend/current.h"
#include "support/fake_platform.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace {

int moduleTag = 0; // its address is the fake module's handle

template <size_t N>
struct Text {
    char characters[N] = {};
    constexpr Text(const char (&text)[N])
    {
        std::copy_n(text, N, characters);
    }
    constexpr std::string_view view() const
    {
        return {characters, N - 1};
    }
};

// Type names of a declared argument list: "(GLenum target, GLuint texture)" gives "GLenum", "GLuint".
std::vector<std::string> argumentTypes(std::string_view list)
{
    std::vector<std::string> types;
    list = list.substr(1, list.size() - 2);
    while (!list.empty()) {
        const size_t comma = list.find(',');
        std::string_view one = list.substr(0, comma);
        one.remove_prefix(std::min(one.find_first_not_of(' '), one.size()));
        types.emplace_back(one.substr(0, one.find(' ')));
        if (comma == std::string_view::npos) break;
        list.remove_prefix(comma + 1);
    }
    return types;
}

std::string format(const char *pattern, auto value)
{
    char text[64];
    std::snprintf(text, sizeof(text), pattern, value);
    return text;
}

std::string numberText(double value)
{
    return format("%g", value == 0 ? 0.0 : value);
}

template <typename T>
std::string argumentText(const std::string &type, T value)
{
    if constexpr (std::is_same_v<T, const GLchar *>) {
        return value ? '"' + std::string(value) + '"' : "null";
    } else if constexpr (std::is_pointer_v<T>) {
        const auto address = reinterpret_cast<uintptr_t>(value);
        if (address == 0) return "null";
        return address < 0x10000 ? format("+%zu", address) : "ptr";
    } else if constexpr (std::is_floating_point_v<T>) {
        return numberText(value);
    } else {
        return type == "GLenum" ? format("0x%04x", static_cast<unsigned>(value)) : std::to_string(value);
    }
}

std::string floats(const GLfloat *values, size_t count)
{
    std::string text = "{";
    for (size_t i = 0; i < count; ++i)
        text += (i ? ", " : "") + numberText(values[i]);
    return text + "}";
}

// Floats behind the last argument of a load such as glUniform4fv(location, count, values); 0 for other functions.
size_t floatsPerItem(std::string_view name)
{
    const auto isOneOf = [name](auto... names) { return ((name == names) || ...); };
    if (isOneOf("glUniform1fv", "glVertexAttrib1fv")) return 1;
    if (isOneOf("glUniform2fv", "glVertexAttrib2fv")) return 2;
    if (isOneOf("glUniform3fv", "glVertexAttrib3fv")) return 3;
    if (isOneOf("glUniform4fv", "glVertexAttrib4fv", "glUniformMatrix2fv")) return 4;
    if (name == "glUniformMatrix3fv") return 9;
    if (name == "glUniformMatrix4fv") return 16;
    return 0;
}

// What a function of the backend answers beyond being recorded.
template <typename R, typename... A>
R answer(std::string_view name, std::tuple<A...> arguments)
{
    FakeBackend &backend = fakeBackend();
    if constexpr (std::is_same_v<std::tuple<A...>, std::tuple<GLenum, GLint *>>) {
        auto [pname, out] = arguments;
        if (name == "glGetIntegerv" && pname == GL_VIEWPORT) std::copy_n(backend.viewport, 4, out);
        if (name == "glGetIntegerv" && pname == GL_MAX_VIEWPORT_DIMS) std::copy_n(backend.maxViewportDims, 2, out);
    }
    if constexpr (std::is_same_v<std::tuple<A...>, std::tuple<GLuint, GLint, GLint, GLenum, GLint *>>) {
        auto [texture, face, level, pname, out] = arguments;
        if (pname == GL_TEXTURE_WIDTH_QRN) *out = backend.texLevelParameters[0];
        if (pname == GL_TEXTURE_HEIGHT_QRN) *out = backend.texLevelParameters[1];
        if (pname == GL_TEXTURE_INTERNAL_FORMAT_QRN) *out = backend.texLevelParameters[2];
    }
    if constexpr (std::is_same_v<std::tuple<A...>, std::tuple<GLuint, GLsizei, const GLchar *const *, const GLint *>>) {
        if (name == "glShaderSource") backend.shaderTexts.emplace_back(*std::get<2>(arguments));
    }
    if constexpr (std::is_same_v<std::tuple<A...>, std::tuple<GLuint, const GLchar *>> && std::is_same_v<R, int>) {
        return fakeLocation(std::get<1>(arguments));
    }
    if constexpr (std::is_same_v<R, GLuint>) {
        if (name == "glGetError") return std::exchange(backend.error, GLenum(GL_NO_ERROR));
        if (name == "glCreateShader" && backend.createShaderFails) return 0;
        if (name == "glCreateShader" || name == "glCreateProgram") return backend.nextName++;
    }
    if constexpr (std::is_integral_v<R>) {
        const auto result = backend.results.find(std::string(name));
        if (result != backend.results.end()) return static_cast<R>(result->second);
    }
    return R();
}

template <Text Name, Text Arguments, typename Function>
struct Recorder;

template <Text Name, Text Arguments, typename R, typename... A>
struct Recorder<Name, Arguments, R (*)(A...)> {
    static R GL_APIENTRY call(A... arguments)
    {
        static const std::vector<std::string> types = argumentTypes(Arguments.view());
        const size_t perItem = floatsPerItem(Name.view());
        std::string text = std::string(Name.view()) + "(";
        size_t place = 0;
        size_t items = 1;
        [[maybe_unused]] const auto append = [&](auto argument) {
            if (place) text += ", ";
            if constexpr (std::is_same_v<decltype(argument), const GLfloat *>) {
                text += perItem ? floats(argument, perItem * items) : argumentText("", argument);
            } else {
                if constexpr (std::is_same_v<decltype(argument), GLsizei>) {
                    if (place == 1 && types[place] == "GLsizei") items = static_cast<size_t>(argument);
                }
                text += argumentText(types[place], argument);
            }
            ++place;
        };
        (append(arguments), ...);
        FakeBackend &backend = fakeBackend();
        backend.calls.push_back(text + ")");
        const auto hook = backend.onCall.find(std::string(Name.view()));
        if (hook != backend.onCall.end()) hook->second();
        return answer<R>(Name.view(), std::tuple<A...>(arguments...));
    }
};

// Client table of the fake module. A backend context is a heap integer.
void *createContext(void *share, void *config, const void *attributes, uint32_t slot, void *extra)
{
    FakeBackend &backend = fakeBackend();
    backend.calls.emplace_back("createContext");
    backend.clientArguments = {share, config, attributes, offsetPointer(slot), extra};
    if (backend.createContextFails) return nullptr;
    ++backend.contextsAlive;
    return new int(backend.contextsAlive);
}

int destroyContext(void *context)
{
    fakeBackend().calls.emplace_back("destroyContext");
    fakeBackend().clientArguments = {context};
    --fakeBackend().contextsAlive;
    delete static_cast<int *>(context);
    return 1;
}

int setBuffers(void *context, void *draw, void *read)
{
    fakeBackend().calls.emplace_back("setBuffers");
    fakeBackend().clientArguments = {context, draw, read};
    return fakeBackend().setBuffersResult;
}

std::string clientCall(const char *name, std::initializer_list<int64_t> values)
{
    std::string text = std::string(name) + "(";
    for (const int64_t value : values)
        text += (text.back() == '(' ? "" : ", ") + std::to_string(value);
    return text + ")";
}

void fillClientTable(void *out)
{
    auto *table = static_cast<ClientAPIFunctions *>(out);
    *table = {};
    if (fakeBackend().clientTableEmpty) return;
    table->createContext = createContext;
    table->destroyContext = destroyContext;
    table->setBuffers = setBuffers;
    table->flush = [] { fakeBackend().calls.emplace_back("flush"); };
    table->finish = [] { fakeBackend().calls.emplace_back("finish"); };
    table->scissor = [](GLint x, GLint y, GLsizei w, GLsizei h) {
        fakeBackend().calls.push_back(clientCall("scissor", {x, y, w, h}));
    };
    table->viewport = [](GLint x, GLint y, GLsizei w, GLsizei h) {
        fakeBackend().calls.push_back(clientCall("viewport", {x, y, w, h}));
    };
    table->setSurfaceTexture = [](void *context, void *a, void *b, void *c, void *d, void *e, void *f) -> void * {
        fakeBackend().calls.emplace_back(context ? "setSurfaceTexture" : "setSurfaceTexture(null)");
        fakeBackend().clientArguments = {context, a, b, c, d, e, f};
        return f;
    };
    table->swapBuffer = [](void *context, void *a, void *b) {
        fakeBackend().calls.emplace_back(context ? "swapBuffer" : "swapBuffer(null)");
        fakeBackend().clientArguments = {context, a, b};
        return 7;
    };
    table->createClientSurface = [](void *first, void *surface) {
        fakeBackend().calls.emplace_back(first || !surface ? "createClientSurface wrong" : "createClientSurface");
        fakeBackend().clientArguments = {first, surface};
        return 5;
    };
    table->destroyClientSurface = [](void *surface) {
        fakeBackend().calls.emplace_back("destroyClientSurface");
        fakeBackend().clientArguments = {surface};
        return 6;
    };
    table->queryClientCapability = [](void *a, void *b) {
        fakeBackend().calls.emplace_back("queryClientCapability");
        fakeBackend().clientArguments = {a, b};
        return 8;
    };
}

const std::map<std::string, void *> &entryPoints()
{
    // A row becomes: {"glClear", (void *)Recorder<"glClear", "(GLbitfield mask)", void (*)(GLbitfield)>::call},
    static const std::map<std::string, void *> entries = {
#define BACKEND(name, result, arguments, visibility, group, need)                                                      \
    {#name, reinterpret_cast<void *>(&Recorder<Text(#name), Text(#arguments), decltype(name##_2_0)>::call)},
#include "frontend/backend.def"
        {"ogl2GetClientAPIFunctions", reinterpret_cast<void *>(fillClientTable)},
    };
    return entries;
}

void *lookUp(void *, const char *name)
{
    const FakeBackend &backend = fakeBackend();
    const std::string wanted = name;
    if (!backend.vendorEntries && (wanted == "glAlphaFuncQRN" || wanted == "glFogfvQRN")) return nullptr;
    if (std::find(backend.absent.begin(), backend.absent.end(), wanted) != backend.absent.end()) return nullptr;
    const auto found = entryPoints().find(wanted);
    return found == entryPoints().end() ? nullptr : found->second;
}

ClientAPIFunctions clientTable()
{
    ClientAPIFunctions table = {};
    oglGetClientAPIFunctions(&table);
    if (!table.createContext) throw std::runtime_error("the library did not fill its client table");
    return table;
}

uint32_t testSlot()
{
    static const uint32_t slot = os_tls_alloc();
    return slot;
}

} // namespace

FakeBackend &fakeBackend()
{
    static FakeBackend backend;
    return backend;
}

void resetFakeBackend()
{
    resetFakePlatform();
    const int alive = fakeBackend().contextsAlive;
    fakeBackend() = FakeBackend{};
    fakeBackend().contextsAlive = alive;
    fakePlatform().modules["libGLESv2.so"] = &moduleTag;
    fakePlatform().getaddr = lookUp;
}

GLint fakeLocation(const std::string &name)
{
    const auto unknown = fakeBackend().unknownLocations.find(name);
    if (unknown != fakeBackend().unknownLocations.end()) return unknown->second;
    static std::map<std::string, GLint> locations = {{"gles_Vertex", 0}};
    return locations.emplace(name, static_cast<GLint>(locations.size())).first->second;
}

std::vector<std::string> callsOf(const std::string &function)
{
    std::vector<std::string> found;
    for (const std::string &call : fakeBackend().calls) {
        if (call.rfind(function + "(", 0) == 0) found.push_back(call);
    }
    return found;
}

std::vector<std::string> takeCalls()
{
    return std::exchange(fakeBackend().calls, {});
}

TestContext::TestContext(void *share)
{
    ctx = static_cast<GLIContext *>(clientTable().createContext(share, nullptr, nullptr, testSlot(), nullptr));
    if (!ctx) throw std::runtime_error("no context");
    makeCurrent();
    fakeBackend().calls.clear();
}

TestContext::~TestContext()
{
    clientTable().destroyContext(ctx);
}

void TestContext::makeCurrent() const
{
    clientTable().setBuffers(ctx, nullptr, nullptr);
    os_tls_write(__gl_tls_index, ctx);
}
