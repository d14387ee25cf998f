// SPDX-License-Identifier: MIT
// Programs made by the driver: compiled and linked, or loaded from a file of an earlier run.
#include "programs.h"
#include "stored_programs.h"

#include <algorithm>
#include <chrono>
#include <iterator>

static std::string infoLog(GLuint object, decltype(Driver::glGetShaderiv) getiv,
                           decltype(Driver::glGetShaderInfoLog) getLog)
{
    GLint length = 0;
    getiv(object, GL_INFO_LOG_LENGTH, &length);
    std::string log(static_cast<size_t>(length > 0 ? length : 0), '\0');
    GLsizei written = 0;
    if (length > 0) getLog(object, length, &written, log.data());
    log.resize(static_cast<size_t>(written));
    return log;
}

GLuint compileForDriver(GLenum type, const std::string &text, BuildResult &result)
{
    const GLuint shader = driver.glCreateShader(type);
    const GLchar *source = text.c_str();
    const GLint length = static_cast<GLint>(text.size());
    GLint status = GL_FALSE;
    driver.glShaderSource(shader, 1, &source, &length);
    driver.glCompileShader(shader);
    driver.glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
    result.ok = status == GL_TRUE;
    result.log = infoLog(shader, driver.glGetShaderiv, driver.glGetShaderInfoLog);
    return shader;
}

// Compiles the stages into the program. False when one of them failed.
static bool compileStages(GLuint program, const TranslatedProgram &texts, BuildResult &result, BuildResult (&stages)[2])
{
    BuildResult geometry{.ok = true};
    const struct {
        GLenum type;
        const std::string &text;
        BuildResult &result;
    } parts[] = {{GL_VERTEX_SHADER, texts.vertex, stages[0]},
                 {GL_FRAGMENT_SHADER, texts.fragment, stages[1]},
                 {GL_GEOMETRY_SHADER_EXT, texts.geometry, geometry}};
    for (const auto &part : parts) {
        if (part.text.empty() && part.type == GL_GEOMETRY_SHADER_EXT) continue;
        const GLuint shader = compileForDriver(part.type, part.text, part.result);
        driver.glAttachShader(program, shader);
        driver.glDeleteShader(shader); // goes with the program
        if (!part.result.ok) result.log += part.result.log;
    }
    return stages[0].ok && stages[1].ok && geometry.ok;
}

// The attributes of the generated texts, by the place they get in every program: a change of programs then leaves the
// arrays as they are. OpenGL ES 2.0 has at least eight places.
static constexpr const char *kUsualAttributes[] = {"gles_Vertex",         "gles_Normal",         "gles_Color",
                                                   "gles_MultiTexCoord0", "gles_MultiTexCoord1", "gles_PointSize",
                                                   "mpalette_weight",     "mpalette_index"};

// A place that the caller has given to a name is left to that name.
static void bindUsualAttributes(GLuint program, const AttributeBindings &bindings)
{
    for (GLuint index = 0; index < std::size(kUsualAttributes); ++index) {
        const auto holds = [&](const auto &binding) { return binding.second == index; };
        if (std::none_of(bindings.begin(), bindings.end(), holds))
            driver.glBindAttribLocation(program, index, kUsualAttributes[index]);
    }
}

static bool link(GLuint program, const AttributeBindings &bindings, BuildResult &result)
{
    bindUsualAttributes(program, bindings);
    for (const auto &[name, index] : bindings)
        driver.glBindAttribLocation(program, index, name.c_str());
    GLint status = GL_FALSE;
    driver.glLinkProgram(program);
    driver.glGetProgramiv(program, GL_LINK_STATUS, &status);
    result.log = infoLog(program, driver.glGetProgramiv, driver.glGetProgramInfoLog);
    return status == GL_TRUE;
}

static void buildOrLoad(GLuint program, const TranslatedProgram &texts, const AttributeBindings &bindings,
                        BuildResult &result, BuildResult (&stages)[2])
{
    const std::string key = storesPrograms() ? storedProgramKey(texts, bindings) : std::string();
    result.loaded = !key.empty() && loadStoredProgram(key, program);
    if (result.loaded) {
        result.ok = stages[0].ok = stages[1].ok = true;
        return;
    }
    if (!key.empty()) askForStorage(program);
    result.ok = compileStages(program, texts, result, stages) && link(program, bindings, result);
    if (result.ok && !key.empty()) storeProgram(key, program);
}

GLuint buildDriverProgram(const TranslatedProgram &texts, const AttributeBindings &bindings, BuildResult &result,
                          BuildResult (&stages)[2])
{
    const auto begin = std::chrono::steady_clock::now();
    const GLuint program = driver.glCreateProgram();
    buildOrLoad(program, texts, bindings, result, stages);
    result.milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
    if (result.ok) return program;
    driver.glDeleteProgram(program);
    return 0;
}
