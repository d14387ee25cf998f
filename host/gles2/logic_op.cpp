// SPDX-License-Identifier: MIT
#include "logic_op.h"

#include "capabilities.h"

#include <algorithm>

// Per bit, with s of the fragment and d of the buffer, every operation is a sum of four terms: 1, s, d and s times d.
// Summed up over the bits of a colour these are its largest value, s, d and their common bits. In the order of the
// operations' numbers.
static constexpr GLfloat kTerms[16][4] = {
    {0, 0, 0, 0},   // GL_CLEAR          0
    {0, 0, 0, 1},   // GL_AND            s & d
    {0, 1, 0, -1},  // GL_AND_REVERSE    s & ~d
    {0, 1, 0, 0},   // GL_COPY           s
    {0, 0, 1, -1},  // GL_AND_INVERTED   ~s & d
    {0, 0, 1, 0},   // GL_NOOP           d
    {0, 1, 1, -2},  // GL_XOR            s ^ d
    {0, 1, 1, -1},  // GL_OR             s | d
    {1, -1, -1, 1}, // GL_NOR            ~(s | d)
    {1, -1, -1, 2}, // GL_EQUIV          ~(s ^ d)
    {1, 0, -1, 0},  // GL_INVERT         ~d
    {1, 0, -1, 1},  // GL_OR_REVERSE     s | ~d
    {1, -1, 0, 0},  // GL_COPY_INVERTED  ~s
    {1, -1, 0, 1},  // GL_OR_INVERTED    ~s | d
    {1, 0, 0, -1},  // GL_NAND           ~(s & d)
    {1, 0, 0, 0},   // GL_SET            1
};
static_assert(GL_XOR - GL_CLEAR == 6 && GL_SET - GL_CLEAR == 15);

// OpenGL ES 1.1 has no buffers of more bits a component.
static constexpr GLint kMostBits = 10;

static constexpr const char *kTermsUniform = "trl20_LogicOp";
static constexpr const char *kMostUniform = "trl20_ColorMost";

// The common bits are found bit by bit, since GLSL ES 1.00 has no operators for them.
static constexpr const char *kMain =
    "#undef main\n"
    "uniform PRECISION vec4 trl20_LogicOp, trl20_ColorMost;\n"
    "void main()\n"
    "{\n"
    "    PRECISION vec4 d = floor(trl20_Buffer * trl20_ColorMost + 0.5);\n"
    "    trl20_Main();\n"
    "    PRECISION vec4 s = floor(clamp(trl20_Color, 0.0, 1.0) * trl20_ColorMost + 0.5);\n"
    "    PRECISION vec4 sLeft = s, dLeft = d, both = vec4(0.0);\n"
    "    PRECISION float bit = 1.0;\n"
    "    for (int i = 0; i < 10; ++i) {\n"
    "        PRECISION vec4 sHalf = floor(sLeft * 0.5), dHalf = floor(dLeft * 0.5);\n"
    "        both += (sLeft - 2.0 * sHalf) * (dLeft - 2.0 * dHalf) * bit;\n"
    "        sLeft = sHalf;\n"
    "        dLeft = dHalf;\n"
    "        bit *= 2.0;\n"
    "    }\n"
    "    PRECISION vec4 result = trl20_LogicOp.x * trl20_ColorMost + trl20_LogicOp.y * s + trl20_LogicOp.z * d +\n"
    "                        trl20_LogicOp.w * both;\n"
    "    trl20_Color = result / trl20_ColorMost;\n"
    "}\n";

LogicOp findLogicOp(const Context *context)
{
    if (!(context->capabilities.tracked & TRACKED_COLOR_LOGIC_OP)) return LogicOp::Off;
    if (context->capabilities.logicOp == GL_COPY) return LogicOp::Copy;
    return context->group->abilities.framebufferFetch.empty() ? LogicOp::Off : LogicOp::Program;
}

bool addLogicOp(TranslatedProgram &texts, const DriverAbilities &abilities)
{
    if (texts.version == 0) return false;
    const bool arm = abilities.framebufferFetch == "GL_ARM_shader_framebuffer_fetch";
    std::string text = texts.fragment;
    std::string head = "#extension " + abilities.framebufferFetch + " : require\n#define main trl20_Main\n";
    std::string names;
    if (texts.version == 100) {
        if (text.find("gl_FragColor") == std::string::npos) return false;
        names = "#define trl20_Color gl_FragColor\n";
        names += arm ? "#define trl20_Buffer gl_LastFragColorARM\n" : "#define trl20_Buffer gl_LastFragData[0]\n";
    } else {
        const size_t output = text.find(kFragColorOutput);
        if (output == std::string::npos) return false;
        names = "#define trl20_Color trl20_FragColor\n";
        names += arm ? "#define trl20_Buffer gl_LastFragColorARM\n" : "#define trl20_Buffer trl20_FragColor\n";
        if (!arm) text.insert(output, "in"); // an inout colour begins as the buffer's
    }
    names += abilities.fragmentHighp ? "#define PRECISION highp\n" : "#define PRECISION mediump\n";
    // The version stays first; the lines keep their numbers for what the compiler says.
    const size_t first = texts.version == 100 ? 0 : text.find('\n') + 1;
    if (texts.version == 100) head += "#line 1\n";
    text.insert(first, head);
    texts.fragment = text + "\n" + names + kMain;
    return true;
}

LogicOpUniforms findLogicOpUniforms(GLuint driverProgram)
{
    return {.termsLocation = driver.glGetUniformLocation(driverProgram, kTermsUniform),
            .mostLocation = driver.glGetUniformLocation(driverProgram, kMostUniform)};
}

void loadLogicOp(const Context *context, const LogicOpUniforms &uniforms)
{
    GLfloat most[4];
    static constexpr GLenum kBits[] = {GL_RED_BITS, GL_GREEN_BITS, GL_BLUE_BITS, GL_ALPHA_BITS};
    for (int i = 0; i < 4; ++i) {
        GLint bits = 0;
        driver.glGetIntegerv(kBits[i], &bits);
        // A component the buffer lacks is not written, but must not be divided by 0.
        most[i] = static_cast<GLfloat>(bits > 0 ? (1 << std::min(bits, kMostBits)) - 1 : 1);
    }
    driver.glUniform4fv(uniforms.mostLocation, 1, most);
    driver.glUniform4fv(uniforms.termsLocation, 1, kTerms[context->capabilities.logicOp - GL_CLEAR]);
}
