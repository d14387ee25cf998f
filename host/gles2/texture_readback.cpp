// SPDX-License-Identifier: MIT
// Texels of a texture read back: glGetTexSubImageZEK. OpenGL ES 2.0 reads only what it can render to, so the level is
// made a framebuffer's where the driver allows it, and drawn into one otherwise. Both happen in the side context, where
// the application's state is out of reach.
#include "explain.h"
#include "machine_context.h"
#include "texel_formats.h"
#include "texture_levels.h"

#include <vector>

// Parameters of OpenGL ES 3.0.
static constexpr GLenum kTextureBaseLevel = 0x813C;
static constexpr GLenum kTextureMaxLevel = 0x813D;

struct Region {
    GLenum target; // 2D, external, or a face of a cube map
    GLuint texture;
    GLint level;
    TextureLevel size;
    GLint x;
    GLint y;
    GLsizei width;
    GLsizei height;
};

// A framebuffer of the side context's with one level of a texture as its colours. Returns 0 for a level that the driver
// cannot render to.
static GLuint makeFramebuffer(GLenum target, GLuint texture, GLint level)
{
    GLuint framebuffer = 0;
    driver.glGenFramebuffers(1, &framebuffer);
    driver.glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    driver.glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, target, texture, level);
    if (driver.glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE) return framebuffer;
    driver.glDeleteFramebuffers(1, &framebuffer);
    return 0;
}

// True when no error is pending; takes those that are.
static bool ranWithoutErrors()
{
    constexpr int most = 8; // a lost context has errors without end
    bool none = true;
    for (int taken = 0; taken < most && driver.glGetError() != GL_NO_ERROR; ++taken)
        none = false;
    return none;
}

// Reads RGBA bytes; false when the driver reads these colours in other types only.
static bool readPixels(GLint x, GLint y, GLsizei width, GLsizei height, uint8_t *rgba)
{
    driver.glPixelStorei(GL_PACK_ALIGNMENT, 4);
    driver.glReadPixels(x, y, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
    return ranWithoutErrors();
}

static bool readDirectly(const Region &region, uint8_t *rgba)
{
    const GLuint framebuffer = makeFramebuffer(region.target, region.texture, region.level);
    if (!framebuffer) {
        ranWithoutErrors(); // such as of a level above 0 where the driver renders to 0 only
        return false;
    }
    const bool read = readPixels(region.x, region.y, region.width, region.height, rgba);
    driver.glDeleteFramebuffers(1, &framebuffer);
    return read;
}

// The texture's parameters while its texels are drawn: the level alone, its texels as they are.
static constexpr struct {
    GLenum name;
    GLint value;
    bool level; // the value is the level; OpenGL ES 3.0
} kDrawingParameters[] = {
    {GL_TEXTURE_MIN_FILTER, GL_NEAREST, false},
    {GL_TEXTURE_MAG_FILTER, GL_NEAREST, false},
    {GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE, false},
    {GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE, false},
    {kTextureBaseLevel, 0, true},
    {kTextureMaxLevel, 0, true},
};
static constexpr size_t kParameterCount = std::size(kDrawingParameters);

// Sets the parameters and keeps those before; the texture must be bound.
static void setParameters(GLenum target, GLint level, bool levels, GLint (&before)[kParameterCount])
{
    for (size_t i = 0; i < kParameterCount; ++i) {
        const auto &row = kDrawingParameters[i];
        if (row.level && !levels) continue;
        driver.glGetTexParameteriv(target, row.name, &before[i]);
        driver.glTexParameteri(target, row.name, row.level ? level : row.value);
    }
}

static void restoreParameters(GLenum target, bool levels, const GLint (&before)[kParameterCount])
{
    for (size_t i = 0; i < kParameterCount; ++i) {
        if (levels || !kDrawingParameters[i].level)
            driver.glTexParameteri(target, kDrawingParameters[i].name, before[i]);
    }
}

static constexpr const char *kVertexText = "attribute vec2 corner;\n"
                                           "void main() { gl_Position = vec4(corner, 0.0, 1.0); }\n";

// A pixel's middle, moved by the region's corner, is a texel's middle.
static constexpr const char *kFragmentHead = "#ifdef GL_FRAGMENT_PRECISION_HIGH\n"
                                             "precision highp float;\n"
                                             "#else\n"
                                             "precision mediump float;\n"
                                             "#endif\n"
                                             "uniform vec2 origin, size;\n";
static constexpr const char *kExternal = "#extension GL_OES_EGL_image_external : require\n";
static constexpr const char *kFragmentFlat =
    "void main() { gl_FragColor = texture2D(image, (gl_FragCoord.xy + origin) / size); }\n";
static constexpr const char *kFragmentCube = "uniform samplerCube image;\n"
                                             "uniform mat3 face;\n"
                                             "void main()\n"
                                             "{\n"
                                             "    vec2 at = (gl_FragCoord.xy + origin) / size * 2.0 - 1.0;\n"
                                             "    gl_FragColor = textureCube(image, face * vec3(at, 1.0));\n"
                                             "}\n";

// Columns: where s and t of a face run, and its middle (OpenGL ES 2.0, section 3.7.5).
static constexpr GLfloat kFaces[6][9] = {
    {0, 0, -1, 0, -1, 0, 1, 0, 0}, {0, 0, 1, 0, -1, 0, -1, 0, 0}, {1, 0, 0, 0, 0, 1, 0, 1, 0},
    {1, 0, 0, 0, 0, -1, 0, -1, 0}, {1, 0, 0, 0, -1, 0, 0, 0, 1},  {-1, 0, 0, 0, -1, 0, 0, 0, -1},
};

static void addShader(GLuint program, GLenum type, std::initializer_list<const char *> texts)
{
    const GLuint shader = driver.glCreateShader(type);
    driver.glShaderSource(shader, static_cast<GLsizei>(texts.size()), texts.begin(), nullptr);
    driver.glCompileShader(shader);
    driver.glAttachShader(program, shader);
    driver.glDeleteShader(shader);
}

static void addFragmentShader(GLuint program, GLenum target)
{
    if (target == GL_TEXTURE_2D)
        addShader(program, GL_FRAGMENT_SHADER, {kFragmentHead, "uniform sampler2D image;\n", kFragmentFlat});
    else if (target == GL_TEXTURE_EXTERNAL_OES)
        addShader(program, GL_FRAGMENT_SHADER,
                  {kExternal, kFragmentHead, "uniform samplerExternalOES image;\n", kFragmentFlat});
    else
        addShader(program, GL_FRAGMENT_SHADER, {kFragmentHead, kFragmentCube});
}

// The program that draws texels of a texture of the target; 0 when the driver refuses it.
static GLuint makeProgram(GLenum target)
{
    const GLuint program = driver.glCreateProgram();
    addShader(program, GL_VERTEX_SHADER, {kVertexText});
    addFragmentShader(program, target);
    driver.glBindAttribLocation(program, 0, "corner");
    driver.glLinkProgram(program);
    GLint linked = GL_FALSE;
    driver.glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked == GL_TRUE) return program;
    driver.glDeleteProgram(program);
    return 0;
}

// Draws the region over the whole framebuffer; the texture must be bound on unit 0.
static bool drawRegion(const Region &region)
{
    const GLuint program = makeProgram(region.target);
    if (!program) return false;
    driver.glUseProgram(program);
    const auto uniform = [&](const char *name) { return driver.glGetUniformLocation(program, name); };
    const GLfloat origin[] = {static_cast<GLfloat>(region.x), static_cast<GLfloat>(region.y)};
    const GLfloat size[] = {static_cast<GLfloat>(region.size.width), static_cast<GLfloat>(region.size.height)};
    driver.glUniform2fv(uniform("origin"), 1, origin);
    driver.glUniform2fv(uniform("size"), 1, size);
    if (region.target >= GL_TEXTURE_CUBE_MAP_POSITIVE_X && region.target <= GL_TEXTURE_CUBE_MAP_NEGATIVE_Z)
        driver.glUniformMatrix3fv(uniform("face"), 1, GL_FALSE, kFaces[region.target - GL_TEXTURE_CUBE_MAP_POSITIVE_X]);
    static const GLfloat corners[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    driver.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, corners);
    driver.glEnableVertexAttribArray(0);
    driver.glViewport(0, 0, region.width, region.height);
    driver.glDisable(GL_DITHER);
    drawUncounted(GL_TRIANGLE_STRIP, 0, 4);
    driver.glUseProgram(0);
    driver.glDeleteProgram(program);
    return true;
}

// Draws the region into a framebuffer of RGBA bytes and reads that. `levels`: the driver can sample any level alone.
static bool readByDrawing(const Region &region, bool levels, uint8_t *rgba)
{
    if (region.level > 0 && !levels) return false;
    GLuint copy = 0;
    driver.glGenTextures(1, &copy);
    driver.glBindTexture(GL_TEXTURE_2D, copy);
    driver.glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, region.width, region.height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    const GLuint framebuffer = makeFramebuffer(GL_TEXTURE_2D, copy, 0);
    bool read = false;
    if (framebuffer) {
        const GLenum target = findTextureTarget(region.target)->target;
        GLint before[kParameterCount] = {};
        driver.glBindTexture(target, region.texture);
        setParameters(target, region.level, levels, before);
        read = drawRegion(region) && readPixels(0, 0, region.width, region.height, rgba);
        restoreParameters(target, levels, before);
        driver.glBindTexture(target, 0);
        driver.glDeleteFramebuffers(1, &framebuffer);
    }
    driver.glDeleteTextures(1, &copy);
    return ranWithoutErrors() && read;
}

// RGBA bytes of the region, rows packed; empty when the driver gives no way to them.
static std::vector<uint8_t> readRegion(Context *context, const Region &region)
{
    std::vector<uint8_t> rgba(static_cast<size_t>(region.width) * static_cast<size_t>(region.height) * 4);
    const std::lock_guard guard(context->group->lock);
    LeftSurfaces left;
    if (!enterSideContext(context, left)) return {};
    const bool read =
        readDirectly(region, rgba.data()) || readByDrawing(region, context->group->abilities.essl300, rgba.data());
    leaveSideContext(context, left);
    if (!read) rgba.clear();
    return rgba;
}

// Writes texels as the application's pack alignment wants its rows.
static void writeTexels(const std::vector<uint8_t> &rgba, const Region &region, const TexelFormat &format, void *texels)
{
    GLint alignment = 4;
    driver.glGetIntegerv(GL_PACK_ALIGNMENT, &alignment);
    const size_t width = static_cast<size_t>(region.width);
    const size_t rowBytes = width * format.bytes;
    const size_t step = (rowBytes + static_cast<size_t>(alignment) - 1) / static_cast<size_t>(alignment) *
                        static_cast<size_t>(alignment);
    uint8_t *row = static_cast<uint8_t *>(texels);
    for (size_t y = 0; y < static_cast<size_t>(region.height); ++y, row += step) {
        for (size_t x = 0; x < width; ++x)
            format.write(&rgba[(y * width + x) * 4], row + x * format.bytes);
    }
}

static bool isInside(GLint from, GLsizei length, GLint whole)
{
    return from >= 0 && length >= 0 && length <= whole && from <= whole - length;
}

void GL_APIENTRY glGetTexSubImageZEK(GLenum target, GLint level, GLint x, GLint y, GLint z, GLsizei width,
                                     GLsizei height, GLsizei depth, GLenum format, GLenum type, void *texels)
{
    Context *context = currentContext;
    if (!context) return;
    const TextureTarget *row = findTextureTarget(target);
    if (!row || target == GL_TEXTURE_CUBE_MAP) return raiseError(GL_INVALID_ENUM);
    GLenum error;
    const TexelFormat *texelFormat = findTexelFormat(format, type, error);
    if (!texelFormat) return raiseError(error);
    if (level < 0 || !isInside(z, depth, 1)) return raiseError(GL_INVALID_VALUE);
    GLint texture = 0;
    driver.glGetIntegerv(row->binding, &texture);
    if (texture == 0) return raiseError(GL_INVALID_OPERATION); // the side context does not see it
    raiseError(driver.glGetError());                           // errors from here on are this function's own
    const TextureLevel size = readTextureLevel(target, level);
    if (!isInside(x, width, size.width) || !isInside(y, height, size.height)) return raiseError(GL_INVALID_VALUE);
    if (width == 0 || height == 0 || depth == 0) return;

    const Region region = {.target = target,
                           .texture = static_cast<GLuint>(texture),
                           .level = level,
                           .size = size,
                           .x = x,
                           .y = y,
                           .width = width,
                           .height = height};
    const std::vector<uint8_t> rgba = readRegion(context, region);
    if (rgba.empty()) return raiseError(GL_INVALID_OPERATION);
    writeTexels(rgba, region, *texelFormat, texels);
}
