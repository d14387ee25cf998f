// SPDX-License-Identifier: MIT
// Shaders, programs, the keeper of linked programs, and the device compiler's dialect on this machine's compiler.
#include "backend_fixture.h"

#include "host/gles2/translator.h"

#include <cmath>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

using Programs = BackendTest;

GLuint compile(BackendFunctions &gl, GLenum type, const std::string &text)
{
    const GLuint shader = gl.glCreateShader(type);
    const GLchar *source = text.c_str();
    gl.glShaderSource(shader, 1, &source, nullptr);
    gl.glCompileShader(shader);
    return shader;
}

GLint shaderValue(BackendFunctions &gl, GLuint shader, GLenum name)
{
    GLint value = -1;
    gl.glGetShaderiv(shader, name, &value);
    return value;
}

GLint programValue(BackendFunctions &gl, GLuint program, GLenum name)
{
    GLint value = -1;
    gl.glGetProgramiv(program, name, &value);
    return value;
}

std::string shaderLog(BackendFunctions &gl, GLuint shader)
{
    char log[2000] = "";
    gl.glGetShaderInfoLog(shader, sizeof log, nullptr, log);
    return log;
}

TEST_F(Programs, AShaderKeepsItsText)
{
    const GLuint shader = gl.glCreateShader(GL_VERTEX_SHADER);
    const GLchar *parts[] = {"void main()", "{ gl_Position = vec4(0.0); }##", "\n"};
    const GLint lengths[] = {-1, 28, 1};
    gl.glShaderSource(shader, 3, parts, lengths);
    EXPECT_EQ(shaderValue(gl, shader, GL_SHADER_SOURCE_LENGTH), 41);
    EXPECT_EQ(shaderValue(gl, shader, GL_SHADER_TYPE), GL_VERTEX_SHADER);
    char text[100];
    GLsizei length = 0;
    gl.glGetShaderSource(shader, sizeof text, &length, text);
    EXPECT_STREQ(text, "void main(){ gl_Position = vec4(0.0); }\n");
    EXPECT_EQ(length, 40);
    gl.glGetShaderSource(shader, 5, &length, text);
    EXPECT_STREQ(text, "void");
    EXPECT_EQ(length, 4);
    EXPECT_EQ(shaderValue(gl, shader, GL_COMPILE_STATUS), GL_FALSE) << "not compiled yet";
    gl.glCompileShader(shader);
    EXPECT_EQ(shaderValue(gl, shader, GL_COMPILE_STATUS), GL_TRUE);
    gl.glDeleteShader(shader);
    gl.glCompileShader(shader);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
}

TEST_F(Programs, ABadTextFailsWithTheLineOfTheText)
{
    const std::string text = "\n#extension GL_OES_EGL_image_external : require\n\n"
                             "flat varying mediump vec4 c;\nuniform lowp bool b;\nvoid main()\n{\n    nonsense;\n}\n";
    const GLuint shader = compile(gl, GL_FRAGMENT_SHADER, text);
    EXPECT_EQ(shaderValue(gl, shader, GL_COMPILE_STATUS), GL_FALSE);
    EXPECT_NE(shaderLog(gl, shader).find("0:8("), std::string::npos) << shaderLog(gl, shader);
    EXPECT_GT(shaderValue(gl, shader, GL_INFO_LOG_LENGTH), 1);

    const GLuint vertex = compile(gl, GL_VERTEX_SHADER, kPlainVertex);
    const GLuint program = gl.glCreateProgram();
    gl.glAttachShader(program, vertex);
    gl.glAttachShader(program, shader);
    gl.glLinkProgram(program);
    EXPECT_EQ(programValue(gl, program, GL_LINK_STATUS), GL_FALSE);
    char log[2000] = "";
    gl.glGetProgramInfoLog(program, sizeof log, nullptr, log);
    EXPECT_NE(std::string(log).find("0:8("), std::string::npos) << log;
    EXPECT_EQ(programValue(gl, program, GL_INFO_LOG_LENGTH), static_cast<GLint>(std::string(log).size()) + 1);
    gl.glUseProgram(program);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
    EXPECT_EQ(gl.glGetUniformLocation(program, "b"), -1);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
}

TEST_F(Programs, NamesAreChecked)
{
    const GLuint shader = gl.glCreateShader(GL_VERTEX_SHADER);
    const GLuint other = gl.glCreateShader(GL_VERTEX_SHADER);
    const GLuint program = gl.glCreateProgram();
    gl.glAttachShader(program, shader);
    const struct {
        const char *what;
        GLenum error;
        std::function<void()> call;
    } cases[] = {
        {"unknown shader", GL_INVALID_VALUE, [&] { gl.glCompileShader(999); }},
        {"program as shader", GL_INVALID_OPERATION, [&] { gl.glCompileShader(program); }},
        {"shader as program", GL_INVALID_OPERATION, [&] { gl.glLinkProgram(shader); }},
        {"unknown program", GL_INVALID_VALUE, [&] { gl.glDeleteProgram(999); }},
        {"attached twice", GL_INVALID_OPERATION, [&] { gl.glAttachShader(program, shader); }},
        {"second of a kind", GL_INVALID_OPERATION, [&] { gl.glAttachShader(program, other); }},
        {"not attached", GL_INVALID_OPERATION, [&] { gl.glDetachShader(program, other); }},
        {"reserved attribute", GL_INVALID_OPERATION, [&] { gl.glBindAttribLocation(program, 0, "gl_x"); }},
        {"no such attribute", GL_INVALID_VALUE, [&] { gl.glBindAttribLocation(program, 1000, "x"); }},
        {"unknown kind", GL_INVALID_ENUM, [&] { gl.glCreateShader(GL_FLOAT); }},
        {"unknown parameter", GL_INVALID_ENUM, [&] { shaderValue(gl, shader, GL_FLOAT); }},
        {"unknown program parameter", GL_INVALID_ENUM, [&] { programValue(gl, program, GL_FLOAT); }},
        {"name 0", GL_NO_ERROR,
         [&] {
             gl.glDeleteProgram(0);
             gl.glDeleteShader(0);
         }},
    };
    for (const auto &c : cases) {
        c.call();
        EXPECT_EQ(gl.glGetError(), c.error) << c.what;
    }
}

TEST_F(Programs, ADeletedShaderLivesAsLongAsItIsAttached)
{
    const GLuint program = gl.glCreateProgram();
    const GLuint shader = compile(gl, GL_VERTEX_SHADER, kPlainVertex);
    gl.glAttachShader(program, shader);
    gl.glDeleteShader(shader);
    EXPECT_EQ(shaderValue(gl, shader, GL_DELETE_STATUS), GL_TRUE);
    EXPECT_EQ(programValue(gl, program, GL_ATTACHED_SHADERS), 1);
    gl.glDetachShader(program, shader);
    shaderValue(gl, shader, GL_DELETE_STATUS);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
}

TEST_F(Programs, ADeletedProgramLivesAsLongAsItIsUsed)
{
    const GLuint program = makeProgram(kPlainVertex, kColorFragment);
    const GLint color = gl.glGetUniformLocation(program, "color");
    gl.glUseProgram(program);
    gl.glDeleteProgram(program);
    EXPECT_EQ(programValue(gl, program, GL_DELETE_STATUS), GL_TRUE);
    gl.glUniform4f(color, 1.0f, 0.0f, 0.0f, 1.0f);
    drawSquare();
    EXPECT_EQ(pixelAt(3, 3), (Pixel{255, 0, 0, 255}));
    gl.glUseProgram(0);
    programValue(gl, program, GL_DELETE_STATUS);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
}

TEST_F(Programs, ADeletedNameIsUnknownToEveryContext)
{
    const GLuint program = makeProgram(kPlainVertex, kColorFragment);
    gl.glUseProgram(program);
    gl.glUseProgram(0);
    void *other = makeContext(context);
    gl.glUseProgram(program);
    gl.glUseProgram(0);
    deleteProgram(program);
    for (void *each : {other, context}) {
        makeCurrent(each);
        gl.glUseProgram(program);
        EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    }
    EXPECT_EQ(backend().table.destroyContext(other), 1);
}

// Names are looked for by their low bits first.
TEST_F(Programs, ProgramsFarApartAreToldApart)
{
    GLuint programs[130];
    for (GLuint &program : programs)
        program = gl.glCreateProgram();
    const GLuint shader = gl.glCreateShader(GL_VERTEX_SHADER);
    gl.glAttachShader(programs[1], shader);
    for (int round = 0; round < 2; ++round)
        for (const GLuint program : programs)
            ASSERT_EQ(programValue(gl, program, GL_ATTACHED_SHADERS), program == programs[1]);
    gl.glDeleteProgram(programs[65]);
    EXPECT_EQ(programValue(gl, programs[1], GL_ATTACHED_SHADERS), 1);
    gl.glUseProgram(programs[65]);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    for (const GLuint program : programs)
        if (program != programs[65]) gl.glDeleteProgram(program);
    gl.glDeleteShader(shader);
}

TEST_F(Programs, ContextsOnTwoThreadsChangeProgramsAtTheSameTime)
{
    const GLuint first = makeProgram(kPlainVertex, kColorFragment);
    const GLuint second = makeProgram(kPlainVertex, kColorFragment);
    const auto changeOften = [&] {
        for (int i = 0; i < 20000; ++i) {
            gl.glUseProgram(first);
            gl.glUseProgram(second);
        }
        gl.glUseProgram(0);
    };
    std::thread thread([&] {
        void *other = makeContext(context);
        changeOften();
        makeCurrent(nullptr);
        backend().table.destroyContext(other);
    });
    changeOften();
    thread.join();
    for (const GLuint program : {first, second}) {
        gl.glUseProgram(program);
        gl.glUniform4f(gl.glGetUniformLocation(program, "color"), 0.0f, 1.0f, 0.0f, 1.0f);
        drawSquare();
        EXPECT_EQ(pixelAt(3, 3), (Pixel{0, 255, 0, 255}));
        gl.glClear(GL_COLOR_BUFFER_BIT);
        gl.glUseProgram(0);
        deleteProgram(program);
        programValue(gl, program, GL_DELETE_STATUS);
        EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE)) << "no use was left behind";
    }
}

TEST_F(Programs, AFailedRelinkLeavesTheProgramInUseRunning)
{
    const GLuint program = makeProgram(kPlainVertex, kColorFragment);
    gl.glUseProgram(program);
    gl.glUniform4f(gl.glGetUniformLocation(program, "color"), 0.0f, 1.0f, 0.0f, 1.0f);
    const GLuint broken = compile(gl, GL_FRAGMENT_SHADER, "broken");
    const GLuint second = gl.glCreateProgram();
    gl.glAttachShader(second, compile(gl, GL_VERTEX_SHADER, kPlainVertex));
    gl.glAttachShader(second, broken);
    gl.glLinkProgram(second);
    EXPECT_EQ(programValue(gl, second, GL_LINK_STATUS), GL_FALSE);
    gl.glUseProgram(second);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
    drawSquare();
    EXPECT_EQ(pixelAt(3, 3), (Pixel{0, 255, 0, 255}));
}

TEST_F(Programs, AttributesAreWhereTheyWereBound)
{
    const std::string vertex = "attribute vec4 a;\nattribute vec4 gles_Vertex;\n"
                               "void main() { gl_Position = gles_Vertex + a; }\n";
    const GLuint program = makeProgram(vertex, kColorFragment);
    EXPECT_EQ(gl.glGetAttribLocation(program, "gles_Vertex"), 0);
    EXPECT_NE(gl.glGetAttribLocation(program, "a"), 0);
    EXPECT_EQ(programValue(gl, program, GL_ACTIVE_ATTRIBUTES), 2);
    gl.glBindAttribLocation(program, 5, "a");
    gl.glLinkProgram(program);
    EXPECT_EQ(gl.glGetAttribLocation(program, "a"), 5);
}

TEST_F(Programs, ADeletedProgramsTextsAreNotCompiledAgain)
{
    const GLuint first = makeProgram(kPlainVertex, kColorFragment);
    gl.glUseProgram(first);
    gl.glUniform4f(gl.glGetUniformLocation(first, "color"), 1.0f, 0.0f, 0.0f, 1.0f);
    gl.glUseProgram(0);
    gl.glDeleteProgram(first);

    const int compiles = countedCalls("glCompileShader");
    const int links = countedCalls("glLinkProgram");
    const GLuint second = makeProgram(kPlainVertex, kColorFragment);
    EXPECT_EQ(countedCalls("glCompileShader"), compiles);
    EXPECT_EQ(countedCalls("glLinkProgram"), links);

    GLfloat color[4] = {9, 9, 9, 9};
    gl.glGetUniformfv(second, gl.glGetUniformLocation(second, "color"), color);
    EXPECT_EQ(std::vector<GLfloat>(color, color + 4), (std::vector<GLfloat>{0, 0, 0, 0})) << "as freshly linked";
    gl.glUseProgram(second);
    gl.glUniform4f(gl.glGetUniformLocation(second, "color"), 0.0f, 0.0f, 1.0f, 1.0f);
    drawSquare();
    EXPECT_EQ(pixelAt(3, 3), (Pixel{0, 0, 255, 255}));
    const GLuint shader = compile(gl, GL_VERTEX_SHADER, kPlainVertex);
    EXPECT_EQ(shaderValue(gl, shader, GL_COMPILE_STATUS), GL_TRUE);
}

TEST_F(Programs, AKeptProgramHandedBackLeavesTheOneInUseAlone)
{
    const GLuint gone = makeProgram(kPlainVertex, kColorFragment);
    gl.glUseProgram(gone);
    gl.glUniform4f(gl.glGetUniformLocation(gone, "color"), 1.0f, 0.0f, 0.0f, 1.0f);
    const GLuint used = makeProgram(kPlainVertex, "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }");
    gl.glUseProgram(used);
    gl.glDeleteProgram(gone);
    makeProgram(kPlainVertex, kColorFragment);
    drawSquare();
    EXPECT_EQ(pixelAt(3, 3), (Pixel{0, 255, 0, 255}));
}

TEST_F(Programs, TwoLivingProgramsOfOneTextAreTwo)
{
    const GLuint first = makeProgram(kPlainVertex, kColorFragment);
    const int links = countedCalls("glLinkProgram");
    const GLuint second = makeProgram(kPlainVertex, kColorFragment);
    EXPECT_EQ(countedCalls("glLinkProgram"), links + 1);
    EXPECT_NE(first, second);
}

TEST_F(Programs, OtherBindingsOrTextsAreOtherPrograms)
{
    gl.glDeleteProgram(makeProgram(kPlainVertex, kColorFragment));
    const int links = countedCalls("glLinkProgram");
    gl.glDeleteProgram(makeProgram(kPlainVertex, std::string(kColorFragment) + "\n"));
    EXPECT_EQ(countedCalls("glLinkProgram"), links + 1);
    const GLuint program = gl.glCreateProgram();
    gl.glBindAttribLocation(program, 3, "gles_Vertex");
    gl.glAttachShader(program, compile(gl, GL_VERTEX_SHADER, kPlainVertex));
    gl.glAttachShader(program, compile(gl, GL_FRAGMENT_SHADER, kColorFragment));
    gl.glLinkProgram(program);
    EXPECT_EQ(countedCalls("glLinkProgram"), links + 2);
    EXPECT_EQ(gl.glGetAttribLocation(program, "gles_Vertex"), 3);
}

// 256 programs are kept: the 257th deletion throws the first away at the next build.
TEST_F(Programs, TheKeeperThrowsTheOldestAway)
{
    const auto fragment = [](int i) { return "void main() { gl_FragColor = vec4(" + std::to_string(i) + ".0); }\n"; };
    std::vector<GLuint> programs;
    for (int i = 0; i < 258; ++i)
        programs.push_back(makeProgram(kPlainVertex, fragment(i)));
    for (GLuint program : programs)
        gl.glDeleteProgram(program);
    const int deletions = countedCalls("glDeleteProgram");
    gl.glDeleteProgram(makeProgram(kPlainVertex, kColorFragment)); // a build, which trims to 256
    EXPECT_EQ(countedCalls("glDeleteProgram"), deletions + 2);

    int links = countedCalls("glLinkProgram");
    makeProgram(kPlainVertex, fragment(2)); // oldest that was kept
    EXPECT_EQ(countedCalls("glLinkProgram"), links);
    makeProgram(kPlainVertex, fragment(1)); // thrown away
    EXPECT_EQ(countedCalls("glLinkProgram"), links + 1);
}

TEST_F(Programs, ARelinkThroughAnotherContextTakesEffectAtTheNextUse)
{
    const GLuint vertex = compile(gl, GL_VERTEX_SHADER, kPlainVertex);
    const GLuint red = compile(gl, GL_FRAGMENT_SHADER, "void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }");
    const GLuint green = compile(gl, GL_FRAGMENT_SHADER, "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }");
    const GLuint program = gl.glCreateProgram();
    gl.glBindAttribLocation(program, 0, "gles_Vertex");
    gl.glAttachShader(program, vertex);
    gl.glAttachShader(program, red);
    gl.glLinkProgram(program);
    gl.glUseProgram(program);
    drawSquare();
    EXPECT_EQ(pixelAt(9, 9), (Pixel{255, 0, 0, 255}));

    void *other = makeContext(context);
    gl.glDetachShader(program, red);
    gl.glAttachShader(program, green);
    gl.glLinkProgram(program);
    makeCurrent(context);
    drawSquare();
    EXPECT_EQ(pixelAt(9, 9), (Pixel{255, 0, 0, 255}));
    gl.glUseProgram(program);
    drawSquare();
    EXPECT_EQ(pixelAt(9, 9), (Pixel{0, 255, 0, 255}));
    EXPECT_EQ(backend().table.destroyContext(other), 1);
}

// Every construct of the device's dialect at once, in a program that has to link and to draw.
TEST_F(Programs, TheDevicesDialectCompiles)
{
    const std::string vertex =
        "#pragma GL_QRN_flat_varying\n\n#define gles_MaxTextures  2\n\nattribute vec4     gles_Vertex;\n"
        "attribute vec4     gles_Color;\nflat varying vec4  gles_FragColor;\nvarying vec4       gles_TexCoord0;\n"
        "varying float      gles_FogFactor;\nvarying float      userClipDotVeye;\n"
        "void main(void)\n{\n    gles_FragColor = gles_Color;\n    gles_TexCoord0 = gles_Vertex;\n"
        "    gles_FogFactor = 0.5;\n    userClipDotVeye = gles_Vertex.w;\n    gl_Position = gles_Vertex;\n}\n";
    const std::string fragment =
        "\n#pragma GL_QRN_flat_varying\n#extension GL_QRN_fog_blend : require\n"
        "#extension GL_OES_EGL_image_external : require\n\nflat varying mediump vec4   gles_FragColor;\n"
        "varying mediump vec4        gles_TexCoord0;\nuniform         samplerCube gles_sampler0;\n"
        "uniform         sampler2D gles_sampler1;\nuniform lowp    bool        userClipNeg;\n"
        "uniform mediump float       gles_AlphaRef;\nmediump         vec4        currentColor;\n"
        "varying highp   float       userClipDotVeye;\nvarying mediump float       gles_FogFactor;\n\n"
        "void main(void)\n{\n    mediump vec4  texture0;\n    texture0 = textureCube(gles_sampler0, "
        "gles_TexCoord0.xyz);\n"
        "    texture0 += texture2DProj(gles_sampler1, gles_TexCoord0.xyzw);\n"
        "    texture0 += texture2D(gles_sampler1, gl_PointCoord.xy);\n    currentColor = gles_FragColor;\n"
        "    currentColor.a += texture0.a * 0.0;\n"
        "    if (!(currentColor.a  > gles_AlphaRef)) discard;\n"
        "    if     (!userClipNeg && userClipDotVeye < 0.0 ) discard;\n    gl_FogFactor = gles_FogFactor;\n"
        "    gl_FragColor = currentColor;\n}\n";
    const GLuint program = makeProgram(vertex, fragment);
    const GLfloat vertices[] = {-1, -1, 1, 0, 0, 1, 1, -1, 0, 1, 0, 1, -1, 1, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1};
    const GLint color = gl.glGetAttribLocation(program, "gles_Color");
    ASSERT_GE(color, 0);
    EXPECT_GE(gl.glGetUniformLocation(program, "userClipNeg"), 0);
    gl.glUseProgram(program);
    gl.glUniform1i(gl.glGetUniformLocation(program, "gles_sampler1"), 1);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 24, vertices);
    gl.glVertexAttribPointer(static_cast<GLuint>(color), 4, GL_FLOAT, GL_FALSE, 24, vertices + 2);
    gl.glEnableVertexAttribArray(0);
    gl.glEnableVertexAttribArray(static_cast<GLuint>(color));
    gl.glDrawArrays(GL_TRIANGLES, 0, 3);
    // Flat: the triangle has its last vertex's colour, blue.
    EXPECT_EQ(pixelAt(1, 1), (Pixel{0, 0, 255, 255}));
    EXPECT_EQ(pixelAt(20, 2), (Pixel{0, 0, 255, 255}));
}

constexpr const char *kLineVertex = "attribute vec4 gles_Vertex;\nvarying vec4 gles_FragColor;\nvoid main(void)\n{\n"
                                    "    gles_FragColor = gles_Vertex.x < 0.0 ? vec4(1.0) : vec4(1.0, 0.0, 0.0, 1.0);\n"
                                    "    gl_Position = gles_Vertex;\n}\n";
constexpr const char *kLineFragment =
    "\n#extension GL_QRN_line_coord : require\n#extension GL_OES_EGL_image_external : require\n\n"
    "varying mediump vec4        gles_FragColor;\nuniform mediump float       gles_LineWidth;\n"
    "mediump         vec4        currentColor;\nvoid main(void)\n{\n    mediump float dist;\n"
    "    mediump float coverage;\n    currentColor = gles_FragColor;\n    dist = abs(gl_LineCoord.y - 0.5);\n"
    "    coverage = min( (0.5 - dist) * gles_LineWidth, 1.0);\n    currentColor.a *= coverage;\n"
    "    gl_FragColor = currentColor;\n}\n";

// Drivers that can do less, or the same in another way, on this machine's compiler.
TEST_F(Programs, EveryAbilitysTranslationLinks)
{
    const DriverAbilities plain = {.fragmentHighp = true};
    DriverAbilities extension = {.fragmentHighp = true, .essl300 = true};
    extension.geometryExtensionEssl310 = "GL_EXT_geometry_shader";
    const struct {
        const char *what;
        DriverAbilities abilities;
        int version;
    } cases[] = {
        {"least", {}, 100},
        {"highp", plain, 100},
        {"3.00", {.fragmentHighp = true, .essl300 = true}, 100},
        {"3.10 with the extension", extension, 310},
        {"3.20", {.fragmentHighp = true, .essl300 = true, .geometryEssl320 = true}, 320},
    };
    for (const auto &c : cases) {
        const TranslatedProgram texts = translateProgram(kLineVertex, kLineFragment, c.abilities);
        EXPECT_EQ(texts.version, c.version) << c.what;
        const GLuint program = driver.glCreateProgram();
        for (const auto &[type, text] : {std::pair{GL_VERTEX_SHADER, &texts.vertex},
                                         {GL_FRAGMENT_SHADER, &texts.fragment},
                                         {GL_GEOMETRY_SHADER_EXT, &texts.geometry}}) {
            if (!text->empty()) driver.glAttachShader(program, compile(driver, static_cast<GLenum>(type), *text));
        }
        driver.glLinkProgram(program);
        char log[2000] = "";
        driver.glGetProgramInfoLog(program, sizeof log, nullptr, log);
        EXPECT_EQ(programValue(driver, program, GL_LINK_STATUS), GL_TRUE) << c.what << ": " << log;
        EXPECT_GE(driver.glGetUniformLocation(program, "gles_LineWidth"), 0) << c.what;
        driver.glDeleteProgram(program);
    }
}

struct SmoothLines : BackendTest {
    void drawLine(const std::vector<GLfloat> &ends, GLint components, GLfloat width)
    {
        if (!program) program = makeProgram(kLineVertex, kLineFragment);
        gl.glClear(GL_COLOR_BUFFER_BIT);
        gl.glUseProgram(program);
        gl.glUniform1f(gl.glGetUniformLocation(program, "gles_LineWidth"), width + 1.0f);
        gl.glLineWidth(width + 1.0f);
        gl.glVertexAttribPointer(0, components, GL_FLOAT, GL_FALSE, 0, ends.data());
        gl.glEnableVertexAttribArray(0);
        gl.glDrawArrays(GL_LINES, 0, 2);
    }

    // Of a line along the pixel centres of a row: with the widened line of w pixels the coverage at distance d from the
    // middle is w / 2 - d, at most 1.
    void expectCoverage(int column, int middle, float widened)
    {
        for (int row = middle - 6; row <= middle + 6; ++row) {
            const float distance = std::abs(static_cast<float>(row - middle));
            const float coverage = std::min(std::max(widened / 2.0f - distance, 0.0f), 1.0f);
            EXPECT_NEAR(pixelAt(column, row)[3], coverage * 255.0f, 1.5f) << "row " << row;
        }
    }

    GLuint program = 0;
};

TEST_F(SmoothLines, CoverageFallsOffAcrossTheLine)
{
    const GLfloat y = (16.5f - 16.0f) / 16.0f; // centre of row 16
    drawLine({-1, y, 1, y}, 2, 3.0f);
    expectCoverage(15, 16, 4.0f);
}

TEST_F(SmoothLines, DiagonalLinesAreAsWideAsOthers)
{
    drawLine({-1, -1, 1, 1}, 2, 4.0f);
    double total = 0.0;
    for (int row = 0; row < kSurfaceSize; ++row)
        total += pixelAt(16, row)[3] / 255.0;
    // A column cuts a line of 45 degrees over its width times the square root of 2; the coverage of a widened line of
    // w + 1 pixels sums up to w across it.
    EXPECT_NEAR(total, 4.0 * std::sqrt(2.0), 0.2);
}

TEST_F(SmoothLines, ColoursRunAlongTheLine)
{
    drawLine({-1, 0.03125f, 1, 0.03125f}, 2, 3.0f);
    EXPECT_EQ(pixelAt(15, 16)[0], 255);
    EXPECT_NEAR(pixelAt(2, 16)[1], 255.0 * (1.0 - 2.5 / 32.0), 2.0);
    EXPECT_NEAR(pixelAt(29, 16)[1], 255.0 * (1.0 - 29.5 / 32.0), 2.0);
}

// Ends of different depth: the middle stays in the middle.
TEST_F(SmoothLines, PerspectiveLeavesTheCoverageLinearOnTheScreen)
{
    drawLine({-1, 0.03125f, 0, 1, 4, 0.125f, 0, 4}, 4, 5.0f);
    for (int column : {3, 16, 28}) {
        for (int row = 10; row < 23; ++row) {
            const float distance = std::abs(static_cast<float>(row - 16));
            const float coverage = std::min(std::max(3.0f - distance, 0.0f), 1.0f);
            EXPECT_NEAR(pixelAt(column, row)[3], coverage * 255.0f, 2.5f) << column << ", " << row;
        }
    }
}

TEST_F(SmoothLines, AnEndBehindTheEyeIsCutOff)
{
    // From the middle, w = 1, towards an end with w = -1. The near plane cuts it after a quarter of the way, at
    // x / w = 0.25 / 0.5: column 24.
    drawLine({0, 0.03125f, 0, 1, 1, -0.03125f, -2, -1}, 4, 3.0f);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    for (int column = 0; column < kSurfaceSize; ++column)
        EXPECT_EQ(pixelAt(column, 16)[3], column >= 16 && column < 24 ? 255 : 0) << column;
}

TEST_F(SmoothLines, CullingAndOffsetsDoNotTouchLines)
{
    gl.glEnable(GL_CULL_FACE);
    gl.glEnable(GL_POLYGON_OFFSET_FILL);
    for (GLenum face : {GL_FRONT, GL_BACK, GL_FRONT_AND_BACK}) {
        gl.glCullFace(face);
        drawLine({-1, 0.03125f, 1, 0.03125f}, 2, 3.0f);
        EXPECT_EQ(pixelAt(15, 16)[3], 255) << face;
    }
    EXPECT_EQ(driver.glIsEnabled(GL_CULL_FACE), GL_TRUE);
    EXPECT_EQ(driver.glIsEnabled(GL_POLYGON_OFFSET_FILL), GL_TRUE);
}

TEST_F(SmoothLines, FollowTheViewportAndTheWidth)
{
    drawLine({-1, 0.03125f, 1, 0.03125f}, 2, 3.0f);
    gl.glViewport(0, 0, 16, 16);
    const GLfloat y = (8.5f - 8.0f) / 8.0f;
    drawLine({-1, y, 1, y}, 2, 5.0f);
    expectCoverage(8, 8, 6.0f);
}

TEST_F(SmoothLines, LinesOfNoLengthDrawNothing)
{
    drawLine({0, 0, 0, 0}, 2, 3.0f);
    EXPECT_EQ(pixelAt(15, 15)[3], 0);
    EXPECT_EQ(pixelAt(16, 16)[3], 0);
}

TEST_F(SmoothLines, StripsLoopsAndIndicesAreExpandedToo)
{
    drawLine({-1, 0.03125f, 1, 0.03125f}, 2, 3.0f);
    const GLfloat corners[] = {-0.5f, -0.5f, 0.5f, -0.5f, 0.5f, 0.5f, -0.5f, 0.5f};
    const GLushort indices[] = {0, 1, 2, 3};
    gl.glClear(GL_COLOR_BUFFER_BIT);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, corners);
    gl.glDrawElements(GL_LINE_LOOP, 4, GL_UNSIGNED_SHORT, indices);
    for (const auto &[x, y] : {std::pair{16, 8}, {24, 16}, {16, 24}, {8, 16}})
        EXPECT_EQ(pixelAt(x, y)[3], 255) << x << ", " << y;
    EXPECT_EQ(pixelAt(16, 16)[3], 0);
}

} // namespace
