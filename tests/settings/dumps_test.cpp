// SPDX-License-Identifier: MIT
#include "settings/dumps.h"

#include "frontend/backend.h"
#include "frontend/client_api.h"
#include "settings/panel_settings.h"
#include "state/state_test.h"
#include "support/working_directory.h"

#include <cstdlib>
#include <regex>
#include <sstream>

namespace {

constexpr char kBins[] = "es11_binids.txt";
constexpr char kClip[] = "es11.clip";
constexpr char kState[] = "state_info.txt";

class Dumps : public StateTest {
protected:
    Dumps()
    {
        glLoadIdentity(); // the fixture took the new context's marks away
    }

    // One bin entry for a vertex under the current matrices.
    std::string binOf(const Vec4 &vertex)
    {
        std::filesystem::remove(kBins);
        const GLubyte index = 0;
        glVertexPointer(4, GL_FLOAT, 0, vertex.data());
        glDrawArrays(GL_TRIANGLES, 0, 1); // brings the matrices up to date
        dumpBinIDsElements(ctx, GL_TRIANGLES, 1, GL_UNSIGNED_BYTE, &index);
        std::smatch match;
        const std::string text = readFile(kBins);
        static const std::regex form("BinID buffer #\\d+ \\(1 ids\\)\\n(.*),\\t\\n");
        return std::regex_match(text, match, form) ? match[1].str() : text;
    }

    // What dumpClipFileElements writes for a draw.
    std::string clipOf(GLenum mode, GLsizei count, GLenum type, const void *indices)
    {
        std::filesystem::remove(kClip);
        glDrawArrays(GL_TRIANGLES, 0, 1);
        dumpClipFileElements(ctx, mode, count, type, indices);
        return readFile(kClip);
    }

    std::vector<std::string> filesHere() const
    {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator("."))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    WorkingDirectory directory;
};

// The running number of the next file or report: what the last one had, plus one.
int numberIn(const std::string &text, const char *pattern)
{
    std::smatch match;
    return std::regex_search(text, match, std::regex(pattern)) ? std::stoi(match[1].str()) : -1;
}

ClientAPIFunctions clientTable()
{
    ClientAPIFunctions table = {};
    oglGetClientAPIFunctions(&table);
    return table;
}

// A framebuffer of 3 x 2 pixels whose bytes are 0, 1, 2, ... from the bottom left; green at 0, 0.
void readCountingPixels(GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type, void *pixels)
{
    ASSERT_EQ(x, 0);
    ASSERT_EQ(y, 0);
    ASSERT_EQ(format, GLenum(GL_RGBA));
    ASSERT_EQ(type, GLenum(GL_UNSIGNED_BYTE));
    for (GLsizei i = 0; i < 4 * width * height; ++i)
        static_cast<GLubyte *>(pixels)[i] = static_cast<GLubyte>(i);
}

void readNothing(GLint, GLint, GLsizei, GLsizei, GLenum, GLenum, void *) {}

const GLfloat kTriangle[] = {0.2f, 0.2f, -0.4f, 0.2f, 0.6f, 0.75f};

} // namespace

TEST(DumpFlagsOfSettings, FollowTheTwoSwitches)
{
    PanelSettings settings = {};
    settings.flags0 = ~(PANEL_LOG_DUMPX | PANEL_LOG_PRIMITIVES);
    EXPECT_EQ(dumpFlags(settings), 0);
    settings.flags0 = PANEL_LOG_DUMPX;
    EXPECT_EQ(dumpFlags(settings), DUMP_STATE);
    settings.flags0 = PANEL_LOG_PRIMITIVES;
    EXPECT_EQ(dumpFlags(settings), DUMP_ELEMENTS);
    settings.flags0 |= PANEL_LOG_DUMPX;
    EXPECT_EQ(dumpFlags(settings), DUMP_STATE | DUMP_ELEMENTS);
}

TEST_F(Dumps, TheStateDumpHasEightFieldsOfTheKey)
{
    ShaderStateBitfield key = {};
    key.orthogonalTransform = 1;
    key.pointLight = 1;
    key.noDiffuse = 1;
    key.vertexUnits = 4;
    key.lighting = 1; // not shown
    dumpStateInfo(&key);
    const std::string first = "Shader state bitfield:\n"
                              "orthogonalTransform: 1\n"
                              "directionalLight: 0\n"
                              "pointLight: 1\n"
                              "noAmbient: 0\n"
                              "noDiffuse: 1\n"
                              "noSpecular: 0\n"
                              "disableSpot: 0\n"
                              "vertexUnits: 4\n"
                              "\n";
    EXPECT_EQ(readFile(kState), first);

    key = {};
    key.directionalLight = 1;
    key.noAmbient = 1;
    key.noSpecular = 1;
    key.disableSpot = 1;
    dumpStateInfo(&key);
    EXPECT_EQ(readFile(kState), first + "Shader state bitfield:\n"
                                        "orthogonalTransform: 0\n"
                                        "directionalLight: 1\n"
                                        "pointLight: 0\n"
                                        "noAmbient: 1\n"
                                        "noDiffuse: 0\n"
                                        "noSpecular: 1\n"
                                        "disableSpot: 1\n"
                                        "vertexUnits: 0\n"
                                        "\n")
        << "the second dump is appended";
}

TEST_F(Dumps, ABinEntryHasColumnRowAndClass)
{
    struct Bin {
        Vec4 vertex;
        const char *entry;
    };
    // Column: two per clip-space width, and one in front. Row: four from the top, and one in front.
    const Bin bins[] = {
        {{0.2f, 0.2f, 0, 1}, "(2,2,IN )"},      // sx 0.6, sy 1.6
        {{0.4f, 0.4f, 0, 2}, "(2,2,IN )"},      // the same after the division
        {{-0.6f, -0.7f, 0, 1}, "(1,4,IN )"},    // sx 0.2, sy 3.4
        {{8.6f, -8.8f, 0, 1}, "(7,7,IN )"},     // sx 4.8, sy 19.6
        {{-2.5f, 2.7f, 0, 1}, "(0,0,IN )"},     // sx -0.75, sy -3.4
        {{-1.4f, 0.2f, 0, 1}, "(1,2,IN )"},     // 2 sx = -0.4: the integer part is 0
        {{0.2f, 1.2f, 0, 1}, "(2,1,IN )"},      // sy -0.4
        {{0, 0, 0, 1}, "!2,3,IN !"},            // sy 2 is the edge of a bin
        {{1.01f, 0.2f, 0, 1}, "!3,2,IN !"},     // sx 1.005: 0.005 from the edge
        {{1.03f, 0.2f, 0, 1}, "(3,2,IN )"},     // sx 1.015
        {{0.99f, 0.2f, 0, 1}, "(2,2,IN )"},     // sx 0.995: in front of the edge is not on it
        {{0.2f, 1, 0, 1}, "!2,1,IN !"},         // sy 0
        {{0.2f, 0.5f, 0, 1}, "(2,2,IN )"},      // sy 1: only every second row counts
        {{0.2f, 0.97f, 0, 1}, "(2,1,IN )"},     // sy 0.06, halved 0.03
        {{0.2f, 0.995f, 0, 1}, "!2,1,IN !"},    // sy 0.01, halved 0.005
        {{-3, 0.2f, 0, 1}, "!0,2,IN !"},        // sx -1
        {{-3.01f, 0.2f, 0, 1}, "!0,2,IN !"},    // sx -1.005
        {{-2.99f, 0.2f, 0, 1}, "(0,2,IN )"},    // sx -0.995
        {{0.2f, 0.2f, -1, 1}, "(2,2,IN )"},     // on the near plane
        {{0.2f, 0.2f, -1.01f, 1}, "(2,2,NCP)"}, // before it
        {{0.2f, 0.2f, 1, 1}, "(2,2,IN )"},      // on the far plane
        {{0.2f, 0.2f, 1.01f, 1}, "(2,2,FCP)"},  // behind it
        {{0.4f, 0.4f, 1.5f, 2}, "(2,2,IN )"},   // the planes lie at w
        {{0.4f, 0.4f, -1.5f, 2}, "(2,2,IN )"},
        {{0.4f, 0.4f, 2.1f, 2}, "(2,2,FCP)"},
        {{0.4f, 0.4f, -2.1f, 2}, "(2,2,NCP)"},
        {{-0.2f, -0.2f, 0, -1}, "(2,2,NEG)"},    // behind the viewer
        {{0.2f, 0.2f, 0, 0}, "!0,0,NEG!"},       // nowhere
        {{kNaN, 0.2f, 0, 1}, "(0,0,NEG)"},       // no place: every product of the matrix is NaN
        {{3e38f, 2e-4f, 0, 1e-3f}, "(7,2,IN )"}, // sx is infinite
    };
    for (const Bin &bin : bins) {
        SCOPED_TRACE(testing::PrintToString(bin.vertex));
        EXPECT_EQ(binOf(bin.vertex), bin.entry);
    }
}

TEST_F(Dumps, BinEntriesFollowTheModelviewProjectionMatrix)
{
    glMatrixMode(GL_PROJECTION);
    glScalef(0.5f, 1, 1);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(-2, 0, 0);
    EXPECT_EQ(binOf({0.4f, 0.2f, 0, 1}), "(1,2,IN )"); // x = 0.5 (0.4 - 2) = -0.8, sx 0.1
}

TEST_F(Dumps, BinReportsAreNumberedAndAppended)
{
    const GLushort indices[] = {2, 0, 1};
    glVertexPointer(2, GL_FLOAT, 0, kTriangle);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    dumpBinIDsElements(ctx, GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, indices);
    const int number = numberIn(readFile(kBins), "#(\\d+)");
    dumpBinIDsElements(ctx, GL_LINES, 0, GL_UNSIGNED_SHORT, indices);
    // (0.6, 0.75): sx 0.8, sy 0.5; (0.2, 0.2): sx 0.6, sy 1.6; (-0.4, 0.2): sx 0.3, sy 1.6
    EXPECT_EQ(readFile(kBins), "BinID buffer #" + std::to_string(number) +
                                   " (3 ids)\n(2,1,IN ),\t(2,2,IN ),\t(1,2,IN ),\t\nBinID buffer #" +
                                   std::to_string(number + 1) + " (0 ids)\n\n");
}

TEST_F(Dumps, VerticesTakeSizeAndStrideOfTheArray)
{
    // Three floats per vertex, five apart; the index list has bytes.
    const GLfloat vertices[] = {9, 9, 9, 9, 9, 0.2f, 0.2f, 2, 9, 9, -0.6f, -0.7f, -2, 9, 9};
    const GLubyte indices[] = {1, 2};
    glVertexPointer(3, GL_FLOAT, 5 * sizeof(GLfloat), vertices);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    dumpBinIDsElements(ctx, GL_TRIANGLES, 2, GL_UNSIGNED_BYTE, indices);
    EXPECT_NE(readFile(kBins).find("(2 ids)\n(2,2,FCP),\t(1,4,NCP),\t\n"), std::string::npos) << readFile(kBins);
}

TEST_F(Dumps, PalettesAndBufferObjectsAreTold)
{
    const GLubyte index = 0;
    glVertexPointer(2, GL_FLOAT, 0, kTriangle);
    ctx->key.matrixPalette = 1;
    dumpBinIDsElements(ctx, GL_TRIANGLES, 1, GL_UNSIGNED_BYTE, &index);
    EXPECT_NE(readFile(kBins).find("(1 ids)\nMatrix palette is not supported...\n\n"), std::string::npos);
    ctx->key.matrixPalette = 0;

    const auto expectUnreadable = [&](const void *indices, const char *what) {
        std::filesystem::remove(kBins);
        dumpBinIDsElements(ctx, GL_TRIANGLES, 1, GL_UNSIGNED_BYTE, indices);
        EXPECT_NE(readFile(kBins).find("(1 ids)\nBuffer objects are not supported...\n\n"), std::string::npos) << what;
        EXPECT_EQ(clipOf(GL_TRIANGLE_STRIP, 1, GL_UNSIGNED_BYTE, indices),
                  "TYPE NB! COULDN'T READ THE BUFFER OBJECTS\n")
            << what;
    };
    expectUnreadable(nullptr, "no indices");
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 5);
    expectUnreadable(&index, "indices in a buffer");
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ARRAY_BUFFER, 6);
    glVertexPointer(2, GL_FLOAT, 0, offsetPointer(16));
    expectUnreadable(&index, "vertices in a buffer");
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glVertexPointer(2, GL_FLOAT, 0, nullptr);
    expectUnreadable(&index, "no vertices");
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(Dumps, OtherTypesAreAssertionsAndReadNothing)
{
    const GLuint indices[] = {0x7FFFFFFF, 0x7FFFFFFF};
    glVertexPointer(2, GL_FLOAT, 0, kTriangle);
    EXPECT_EQ(clipOf(GL_TRIANGLE_STRIP, 2, GL_UNSIGNED_INT, indices),
              "TYPE TRIANGLESTRIP VERTEXCOUNT 0 INDEXCOUNT 2 CULLMODE CCW ZWRITE 1 STENCIL 0 COLORWRITE 15\n"
              "IDX 0 -1\n"
              "IDX 1 -1\n");
    EXPECT_FALSE(fakePlatform().assertions.empty());

    fakePlatform().assertions.clear();
    const GLubyte index = 0;
    glVertexPointer(2, GL_SHORT, 0, kTriangle);
    EXPECT_EQ(clipOf(GL_TRIANGLE_STRIP, 1, GL_UNSIGNED_BYTE, &index),
              "TYPE TRIANGLESTRIP VERTEXCOUNT 1 INDEXCOUNT 1 CULLMODE CCW ZWRITE 1 STENCIL 0 COLORWRITE 15\n"
              "VTX 0 0.000000 0.000000 0.000000 1.000000\n"
              "IDX 0 0\n");
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
}

TEST_F(Dumps, AStripIsWrittenWithAllVerticesUpToItsLargestIndex)
{
    const GLfloat vertices[] = {1, 2, 0.25f, -1, 3, 0, 5, 6, 7};
    const GLushort indices[] = {0, 2, 0};
    glVertexPointer(3, GL_FLOAT, 0, vertices);
    glMatrixMode(GL_PROJECTION);
    glScalef(2, 1, 1);
    EXPECT_EQ(clipOf(GL_TRIANGLE_STRIP, 3, GL_UNSIGNED_SHORT, indices),
              "TYPE TRIANGLESTRIP VERTEXCOUNT 3 INDEXCOUNT 3 CULLMODE CCW ZWRITE 1 STENCIL 0 COLORWRITE 15\n"
              "VTX 0 2.000000 2.000000 0.250000 1.000000\n"
              "VTX 1 -2.000000 3.000000 0.000000 1.000000\n"
              "VTX 2 10.000000 6.000000 7.000000 1.000000\n"
              "IDX 0 0\n"
              "IDX 1 2\n"
              "IDX 2 0\n");
    EXPECT_EQ(clipOf(GL_TRIANGLE_STRIP, 0, GL_UNSIGNED_SHORT, indices),
              "TYPE TRIANGLESTRIP VERTEXCOUNT 0 INDEXCOUNT 0 CULLMODE CCW ZWRITE 1 STENCIL 0 COLORWRITE 15\n");
}

TEST_F(Dumps, OtherPrimitivesAreTold)
{
    const GLubyte index = 0;
    glVertexPointer(2, GL_FLOAT, 0, kTriangle);
    for (const GLenum mode : {GL_POINTS, GL_LINES, GL_LINE_LOOP, GL_LINE_STRIP, GL_TRIANGLES, GL_TRIANGLE_FAN}) {
        EXPECT_EQ(clipOf(mode, 1, GL_UNSIGNED_BYTE, &index),
                  "TYPE NB! COULDN'T HANDLE THE PRIMITIVE TYPE: " + std::to_string(mode) + "\n");
    }
    EXPECT_EQ(clipOf(0xAB, 1, GL_UNSIGNED_BYTE, &index), "TYPE NB! COULDN'T HANDLE THE PRIMITIVE TYPE: ab\n");
    EXPECT_TRUE(fakePlatform().assertions.empty());
    const GLuint indices[] = {0};
    clipOf(GL_TRIANGLES, 1, GL_UNSIGNED_INT, indices);
    EXPECT_EQ(fakePlatform().assertions.size(), 1u) << "the largest index is looked for in every mode";
}

TEST_F(Dumps, ClipFilesAreAppended)
{
    const GLubyte index = 0;
    glVertexPointer(2, GL_FLOAT, 0, kTriangle);
    const std::string once = clipOf(GL_LINES, 1, GL_UNSIGNED_BYTE, &index);
    dumpClipFileElements(ctx, GL_LINES, 1, GL_UNSIGNED_BYTE, &index);
    EXPECT_EQ(readFile(kClip), once + once);
}

TEST_F(Dumps, ReportsAndSnapshotsAreNumberedFromZero)
{
    // The counters belong to the process, so this takes one of its own.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const auto numbers = [&] {
        const GLubyte index = 0;
        glVertexPointer(2, GL_FLOAT, 0, kTriangle);
        glDrawArrays(GL_TRIANGLES, 0, 1);
        for (int i = 0; i < 2; ++i) {
            dumpBinIDsElements(ctx, GL_TRIANGLES, 1, GL_UNSIGNED_BYTE, &index);
            glReadPixels_2_0 = readNothing;
            snapshot("picture", 1, 1);
        }
        const std::string bins = readFile(kBins);
        const bool right = bins.find("BinID buffer #0 (") == 0 && bins.find("#1 (") != std::string::npos &&
                           bins.find("#2 (") == std::string::npos && std::filesystem::exists("picture0.tga") &&
                           std::filesystem::exists("picture1.tga") && !std::filesystem::exists("picture2.tga");
        std::_Exit(right ? 0 : 1);
    };
    EXPECT_EXIT(numbers(), testing::ExitedWithCode(0), "");
}

TEST_F(Dumps, AFramebufferIsSavedFromTheTopAsBlueGreenRedOpaque)
{
    glReadPixels_2_0 = readCountingPixels;
    saveFramebuf("picture.tga", 3, 2);
    const unsigned char expected[] = {
        0,  0,  2,  0,   0,  0,  0,  0,   0,  0,  0,  0,   3, 0, 2, 0, 32, 0x20, // header
        14, 13, 12, 255, 18, 17, 16, 255, 22, 21, 20, 255,                       // second row of the framebuffer
        2,  1,  0,  255, 6,  5,  4,  255, 10, 9,  8,  255,                       // first
    };
    EXPECT_EQ(readFile("picture.tga"), std::string(reinterpret_cast<const char *>(expected), sizeof(expected)));
    saveFramebuf("picture.tga", 3, 2);
    EXPECT_EQ(readFile("picture.tga").size(), sizeof(expected)) << "the file is written anew";
}

TEST_F(Dumps, AFramebufferWiderThanAByteKeepsItsSize)
{
    glReadPixels_2_0 = readCountingPixels;
    saveFramebuf("picture.tga", 300, 258);
    const std::string file = readFile("picture.tga");
    ASSERT_EQ(file.size(), 18u + 300 * 258 * 4);
    EXPECT_EQ(file.substr(12, 4), std::string("\x2C\x01\x02\x01", 4));
}

TEST_F(Dumps, PixelsThatTheBackendDoesNotWriteAreBlack)
{
    glReadPixels_2_0 = readNothing;
    saveFramebuf("picture.tga", 1, 1);
    EXPECT_EQ(readFile("picture.tga").substr(18), std::string("\0\0\0\xFF", 4));
}

TEST_F(Dumps, EmptyAndEndlessFramebuffersAreNotSaved)
{
    const size_t before = fakePlatform().allocations;
    saveFramebuf("picture.tga", 0, 4);
    saveFramebuf("picture.tga", 4, -1);
    saveFramebuf("picture.tga", 0x10000, 1);
    saveFramebuf("picture.tga", 1, 0x10000);
    EXPECT_EQ(filesHere(), std::vector<std::string>{});
    EXPECT_EQ(fakePlatform().allocations, before);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
}

TEST_F(Dumps, WithoutMemoryNothingIsSavedAndNothingLost)
{
    const size_t blocks = fakePlatform().liveBlocks;
    for (const int failing : {0, 1}) {
        fakePlatform().allocationsUntilFailure = failing;
        saveFramebuf("picture.tga", 3, 2);
        fakePlatform().allocationsUntilFailure = -1;
        EXPECT_EQ(filesHere(), std::vector<std::string>{});
        EXPECT_EQ(fakePlatform().liveBlocks, blocks);
    }
    glReadPixels_2_0 = readCountingPixels;
    saveFramebuf("picture.tga", 3, 2);
    EXPECT_EQ(fakePlatform().liveBlocks, blocks);
}

TEST_F(Dumps, SnapshotsAreNumbered)
{
    glReadPixels_2_0 = readCountingPixels;
    snapshot("view", 1, 1);
    snapshot("other", 1, 1);
    ASSERT_EQ(filesHere().size(), 2u);
    const int first = numberIn(filesHere()[1], "view(\\d+)\\.tga");
    EXPECT_EQ(filesHere()[0], "other" + std::to_string(first + 1) + ".tga");
}

TEST_F(Dumps, ALongSnapshotNameIsAnAssertionAndIsCut)
{
    glReadPixels_2_0 = readCountingPixels;
    snapshot(std::string(300, 'n').c_str(), 1, 1);
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
    EXPECT_EQ(filesHere(), std::vector<std::string>{std::string(255, 'n')});
}

TEST_F(Dumps, AFileThatCannotBeOpenedIsSkipped)
{
    for (const char *name : {kState, kBins, kClip, "picture.tga"})
        std::filesystem::create_directory(name);
    const GLubyte index = 0;
    glVertexPointer(2, GL_FLOAT, 0, kTriangle);
    dumpStateInfo(&ctx->key);
    dumpBinIDsElements(ctx, GL_TRIANGLES, 1, GL_UNSIGNED_BYTE, &index);
    dumpClipFileElements(ctx, GL_TRIANGLES, 1, GL_UNSIGNED_BYTE, &index);
    saveFramebuf("picture.tga", 1, 1);
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(Dumps, DrawsAndSwapsWriteNothingWithoutTheSwitches)
{
    const GLubyte indices[] = {0, 1, 2};
    glVertexPointer(2, GL_FLOAT, 0, kTriangle);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glDrawElements(GL_TRIANGLE_STRIP, 3, GL_UNSIGNED_BYTE, indices);
    glDrawTexfOES(0, 0, 0, 4, 4);
    clientTable().swapBuffer(ctx, nullptr, nullptr);
    EXPECT_EQ(filesHere(), std::vector<std::string>{});
}

TEST_F(Dumps, EveryDrawAppendsTheStateUnderItsSwitch)
{
    const auto drawsWritten = [] {
        const std::string text = readFile(kState);
        const std::regex title("Shader state bitfield:");
        return std::distance(std::sregex_iterator(text.begin(), text.end(), title), std::sregex_iterator());
    };
    const GLubyte indices[] = {0, 1, 2};
    ctx->settings.dumps = DUMP_STATE;
    glVertexPointer(2, GL_FLOAT, 0, kTriangle);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    EXPECT_EQ(drawsWritten(), 1);
    glDrawElements(GL_TRIANGLE_STRIP, 3, GL_UNSIGNED_BYTE, indices);
    EXPECT_EQ(drawsWritten(), 2);
    glDrawTexfOES(0, 0, 0, 4, 4);
    EXPECT_EQ(drawsWritten(), 3);
    glEnable(GL_MATRIX_PALETTE_OES); // a draw without the palette's arrays is dropped
    glDrawArrays(GL_TRIANGLES, 0, 3);
    EXPECT_EQ(drawsWritten(), 3);
    EXPECT_EQ(filesHere(), std::vector<std::string>{kState});
}

TEST_F(Dumps, TheStateDumpShowsTheKeyOfTheDraw)
{
    ctx->settings.dumps = DUMP_STATE;
    glVertexPointer(2, GL_FLOAT, 0, kTriangle);
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT3);
    const GLfloat place[] = {0, 0, 1, 1};
    glLightfv(GL_LIGHT3, GL_POSITION, place);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    // One point light, no spot light; its ambient and specular colours have alpha 1.
    EXPECT_NE(readFile(kState).find("directionalLight: 0\npointLight: 1\n"), std::string::npos) << readFile(kState);
    EXPECT_NE(readFile(kState).find("disableSpot: 1\nvertexUnits: 0\n"), std::string::npos) << readFile(kState);
}

TEST_F(Dumps, EveryElementDrawWritesTwoReportsUnderItsSwitch)
{
    const GLubyte indices[] = {0, 1, 2};
    ctx->settings.dumps = DUMP_ELEMENTS;
    glVertexPointer(2, GL_FLOAT, 0, kTriangle);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    EXPECT_EQ(filesHere(), std::vector<std::string>{});
    glScalef(0.5f, 1, 1); // the reports see this draw's matrix
    glDrawElements(GL_TRIANGLE_STRIP, 3, GL_UNSIGNED_BYTE, indices);
    EXPECT_EQ(filesHere(), (std::vector<std::string>{kClip, kBins}));
    EXPECT_NE(readFile(kClip).find("VTX 1 -0.200000 0.200000 0.000000 1.000000\n"), std::string::npos);
    // sx 0.55, 0.4, 0.65
    EXPECT_NE(readFile(kBins).find("(3 ids)\n(2,2,IN ),\t(1,2,IN ),\t(2,1,IN ),\t\n"), std::string::npos)
        << readFile(kBins);
    EXPECT_EQ(callsOf("glDrawElements").size(), 1u) << "the draw itself goes on";
}

TEST_F(Dumps, ASwapSavesTheViewportsPartOfTheFramebuffer)
{
    glReadPixels_2_0 = readCountingPixels;
    ctx->settings.dumps = DUMP_STATE;
    glViewport(1, 2, 4, 6);
    takeCalls();
    EXPECT_EQ(clientTable().swapBuffer(ctx, nullptr, nullptr), 7);
    ASSERT_EQ(filesHere().size(), 1u);
    EXPECT_TRUE(std::regex_match(filesHere()[0], std::regex("snapshot\\d+\\.tga"))) << filesHere()[0];
    EXPECT_EQ(readFile(filesHere()[0]).size(), 18u + 5 * 8 * 4);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{"swapBuffer"});

    // Another thread's context, or none, has no framebuffer to read here.
    clientTable().swapBuffer(nullptr, nullptr, nullptr);
    os_tls_write(__gl_tls_index, nullptr);
    clientTable().swapBuffer(ctx, nullptr, nullptr);
    EXPECT_EQ(filesHere().size(), 1u);
    ctx->settings.dumps = DUMP_ELEMENTS;
    context->makeCurrent();
    clientTable().swapBuffer(ctx, nullptr, nullptr);
    EXPECT_EQ(filesHere().size(), 1u);
}
