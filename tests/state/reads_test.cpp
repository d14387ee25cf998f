// SPDX-License-Identifier: MIT
// Vector setters read as many values as their parameter has, and none behind them.
#include "state/state_test.h"

#include <sys/mman.h>
#include <unistd.h>

namespace {

// Memory that ends where reading is an access violation.
class GuardedEnd {
public:
    GuardedEnd() : pageBytes(static_cast<size_t>(sysconf(_SC_PAGESIZE)))
    {
        void *pages = mmap(nullptr, 2 * pageBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (pages == MAP_FAILED) throw std::runtime_error("no memory");
        first = static_cast<char *>(pages);
        mprotect(first + pageBytes, pageBytes, PROT_NONE);
    }
    ~GuardedEnd()
    {
        munmap(first, 2 * pageBytes);
    }
    GuardedEnd(const GuardedEnd &) = delete;
    GuardedEnd &operator=(const GuardedEnd &) = delete;

    // Zeros, the last of which is the last that can be read.
    const void *zeros(size_t bytes) const
    {
        return first + pageBytes - bytes;
    }

private:
    size_t pageBytes;
    char *first;
};

struct Reader {
    GLenum pname;
    size_t values;
};

class VectorReads : public StateTest {
protected:
    // Value: the type of the entry point's vector. The values are zeros, which not every parameter takes.
    template <typename Value>
    void read(const std::vector<Reader> &readers, void (*call)(GLenum pname, const Value *values))
    {
        for (const Reader &reader : readers) {
            SCOPED_TRACE(testing::Message() << std::hex << reader.pname);
            call(reader.pname, static_cast<const Value *>(memory.zeros(reader.values * sizeof(Value))));
            glGetError();
        }
    }

    GuardedEnd memory;
};

using VectorReadsDeathTest = VectorReads;

} // namespace

TEST_F(VectorReads, LightsReadFourThreeOrOne)
{
    const std::vector<Reader> readers = {{GL_AMBIENT, 4},
                                         {GL_DIFFUSE, 4},
                                         {GL_SPECULAR, 4},
                                         {GL_POSITION, 4},
                                         {GL_SPOT_DIRECTION, 3},
                                         {GL_SPOT_EXPONENT, 1},
                                         {GL_SPOT_CUTOFF, 1},
                                         {GL_CONSTANT_ATTENUATION, 1},
                                         {GL_LINEAR_ATTENUATION, 1},
                                         {GL_QUADRATIC_ATTENUATION, 1}};
    for (const bool identity : {true, false}) {
        if (!identity) glTranslatef(1, 2, 3);
        read<GLfloat>(readers, [](GLenum pname, const GLfloat *v) { glLightfv(GL_LIGHT1, pname, v); });
        read<GLfixed>(readers, [](GLenum pname, const GLfixed *v) { glLightxv(GL_LIGHT1, pname, v); });
    }
}

TEST_F(VectorReads, MaterialsReadFourOrOne)
{
    const std::vector<Reader> readers = {{GL_AMBIENT, 4},  {GL_DIFFUSE, 4},  {GL_AMBIENT_AND_DIFFUSE, 4},
                                         {GL_SPECULAR, 4}, {GL_EMISSION, 4}, {GL_SHININESS, 1}};
    ctx->lighting.material.shininess = 5;
    read<GLfloat>(readers, [](GLenum pname, const GLfloat *v) { glMaterialfv(GL_FRONT_AND_BACK, pname, v); });
    ctx->lighting.material.shininess = 5;
    read<GLfixed>(readers, [](GLenum pname, const GLfixed *v) { glMaterialxv(GL_FRONT_AND_BACK, pname, v); });
}

TEST_F(VectorReads, LightModelsReadFourOrOne)
{
    const std::vector<Reader> readers = {{GL_LIGHT_MODEL_AMBIENT, 4}, {GL_LIGHT_MODEL_TWO_SIDE, 1}};
    read<GLfloat>(readers, [](GLenum pname, const GLfloat *v) { glLightModelfv(pname, v); });
    read<GLfixed>(readers, [](GLenum pname, const GLfixed *v) { glLightModelxv(pname, v); });
}

TEST_F(VectorReads, FogsReadFourOrOne)
{
    const std::vector<Reader> readers = {{GL_FOG_COLOR, 4}, {GL_FOG_DENSITY, 1}, {GL_FOG_START, 1},
                                         {GL_FOG_END, 1},   {GL_FOG_MODE, 1},    {0x8450, 1}};
    read<GLfloat>(readers, [](GLenum pname, const GLfloat *v) { glFogfv(pname, v); });
    read<GLfixed>(readers, [](GLenum pname, const GLfixed *v) { glFogxv(pname, v); });
}

TEST_F(VectorReads, PointParametersReadThreeOrOne)
{
    const std::vector<Reader> readers = {{GL_POINT_DISTANCE_ATTENUATION, 3},
                                         {GL_POINT_SIZE_MIN, 1},
                                         {GL_POINT_SIZE_MAX, 1},
                                         {GL_POINT_FADE_THRESHOLD_SIZE, 1}};
    read<GLfloat>(readers, [](GLenum pname, const GLfloat *v) { glPointParameterfv(pname, v); });
    read<GLfixed>(readers, [](GLenum pname, const GLfixed *v) { glPointParameterxv(pname, v); });
}

TEST_F(VectorReads, ClipPlanesReadFour)
{
    const std::vector<Reader> readers = {{GL_CLIP_PLANE0, 4}};
    read<GLfloat>(readers, [](GLenum plane, const GLfloat *v) { glClipPlanef(plane, v); });
    read<GLfixed>(readers, [](GLenum plane, const GLfixed *v) { glClipPlanex(plane, v); });
}

TEST_F(VectorReads, TextureParametersReadFourOrOne)
{
    const std::vector<Reader> readers = {{GL_TEXTURE_CROP_RECT_OES, 4}, {GL_GENERATE_MIPMAP, 1},
                                         {GL_TEXTURE_MIN_FILTER, 1},    {GL_TEXTURE_MAG_FILTER, 1},
                                         {GL_TEXTURE_WRAP_S, 1},        {GL_TEXTURE_WRAP_T, 1}};
    read<GLfloat>(readers, [](GLenum pname, const GLfloat *v) { glTexParameterfv(GL_TEXTURE_2D, pname, v); });
    read<GLint>(readers, [](GLenum pname, const GLint *v) { glTexParameteriv(GL_TEXTURE_2D, pname, v); });
    read<GLfixed>(readers, [](GLenum pname, const GLfixed *v) { glTexParameterxv(GL_TEXTURE_2D, pname, v); });
}

TEST_F(VectorReads, EnvironmentsReadFourOrOne)
{
    const std::vector<Reader> readers = {{GL_TEXTURE_ENV_COLOR, 4}, {GL_TEXTURE_ENV_MODE, 1}, {GL_COMBINE_RGB, 1},
                                         {GL_SRC0_RGB, 1},          {GL_OPERAND0_ALPHA, 1},   {GL_RGB_SCALE, 1},
                                         {GL_ALPHA_SCALE, 1}};
    read<GLfloat>(readers, [](GLenum pname, const GLfloat *v) { glTexEnvfv(GL_TEXTURE_ENV, pname, v); });
    read<GLint>(readers, [](GLenum pname, const GLint *v) { glTexEnviv(GL_TEXTURE_ENV, pname, v); });
    read<GLfixed>(readers, [](GLenum pname, const GLfixed *v) { glTexEnvxv(GL_TEXTURE_ENV, pname, v); });
    const std::vector<Reader> sprite = {{GL_COORD_REPLACE_OES, 1}};
    read<GLfloat>(sprite, [](GLenum pname, const GLfloat *v) { glTexEnvfv(GL_POINT_SPRITE_OES, pname, v); });
    read<GLint>(sprite, [](GLenum pname, const GLint *v) { glTexEnviv(GL_POINT_SPRITE_OES, pname, v); });
    read<GLfixed>(sprite, [](GLenum pname, const GLfixed *v) { glTexEnvxv(GL_POINT_SPRITE_OES, pname, v); });
}

TEST_F(VectorReads, TextureGenerationReadsOne)
{
    const std::vector<Reader> readers = {{GL_TEXTURE_GEN_MODE_OES, 1}};
    read<GLfloat>(readers, [](GLenum pname, const GLfloat *v) { glTexGenfvOES(GL_TEXTURE_GEN_STR_OES, pname, v); });
    read<GLint>(readers, [](GLenum pname, const GLint *v) { glTexGenivOES(GL_TEXTURE_GEN_STR_OES, pname, v); });
    read<GLfixed>(readers, [](GLenum pname, const GLfixed *v) { glTexGenxvOES(GL_TEXTURE_GEN_STR_OES, pname, v); });
}

TEST_F(VectorReadsDeathTest, OneValueLessIsNoticed)
{
    // So that the tests above cannot pass by reading where nothing is guarded.
    const void *three = memory.zeros(3 * sizeof(GLfloat));
    EXPECT_DEATH(glLightfv(GL_LIGHT1, GL_AMBIENT, static_cast<const GLfloat *>(three)), "");
}
