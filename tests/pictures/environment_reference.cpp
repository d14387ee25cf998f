// SPDX-License-Identifier: MIT
#include "pictures/environment_reference.h"

#include <algorithm>

namespace {

double clamped(double value)
{
    return std::clamp(value, 0.0, 1.0);
}

Colour clamped(const Colour &c)
{
    return {clamped(c.r), clamped(c.g), clamped(c.b), clamped(c.a)};
}

// The simple modes, by table 3.15. Decal is defined for RGB and RGBA.
Colour simple(const Environment &env, GLenum format, const Colour &t, const Colour &p)
{
    const bool hasColour = format != GL_ALPHA;
    const bool hasAlpha = format != GL_RGB && format != GL_LUMINANCE;
    const auto each = [&](auto function) {
        return hasColour ? Colour{function(t.r, p.r, env.constant.r), function(t.g, p.g, env.constant.g),
                                  function(t.b, p.b, env.constant.b), 0}
                         : p;
    };
    Colour out;
    switch (env.mode) {
    case GL_REPLACE:
        out = each([](double tex, double, double) { return tex; });
        out.a = hasAlpha ? t.a : p.a;
        return out;
    case GL_DECAL:
        out = each([&](double tex, double prev, double) { return hasAlpha ? prev * (1 - t.a) + tex * t.a : tex; });
        out.a = p.a;
        return out;
    case GL_BLEND:
        out = each([](double tex, double prev, double constant) { return prev * (1 - tex) + constant * tex; });
        break;
    case GL_ADD:
        out = each([](double tex, double prev, double) { return prev + tex; });
        break;
    default:
        out = each([](double tex, double prev, double) { return prev * tex; });
        break;
    }
    out.a = hasAlpha ? p.a * t.a : p.a;
    return out;
}

double combined(GLenum function, const double (&x)[3])
{
    switch (function) {
    case GL_REPLACE:
        return x[0];
    case GL_MODULATE:
        return x[0] * x[1];
    case GL_ADD:
        return x[0] + x[1];
    case GL_ADD_SIGNED:
        return x[0] + x[1] - 0.5;
    case GL_INTERPOLATE:
        return x[0] * x[2] + x[1] * (1 - x[2]);
    default:
        return x[0] - x[1]; // GL_SUBTRACT
    }
}

struct Sources {
    Colour texels[2]; // of both units
    Colour primary, previous;
    size_t unit; // that is being combined
};

Colour sourceColour(GLenum source, const Sources &s, const Environment &env)
{
    switch (source) {
    case GL_TEXTURE:
        return s.texels[s.unit];
    case GL_TEXTURE0:
        return s.texels[0];
    case GL_TEXTURE1:
        return s.texels[1];
    case GL_CONSTANT:
        return env.constant;
    case GL_PRIMARY_COLOR:
        return s.primary;
    default:
        return s.previous;
    }
}

// One channel of an argument; alpha operands take alpha for every channel.
double argument(const Argument &a, const Sources &s, const Environment &env, double Colour::*channel)
{
    const Colour colour = sourceColour(a.source, s, env);
    switch (a.operand) {
    case GL_SRC_COLOR:
        return colour.*channel;
    case GL_ONE_MINUS_SRC_COLOR:
        return 1 - colour.*channel;
    case GL_SRC_ALPHA:
        return colour.a;
    default:
        return 1 - colour.a;
    }
}

Colour combine(const Environment &env, const Sources &s)
{
    constexpr double Colour::*kChannels[] = {&Colour::r, &Colour::g, &Colour::b};
    Colour out = {};
    double dot = 0;
    for (const auto channel : kChannels) {
        double x[3];
        for (size_t i = 0; i < 3; ++i)
            x[i] = argument(env.rgbArguments[i], s, env, channel);
        out.*channel = env.rgbScale * combined(env.rgb, x);
        dot += 4 * (x[0] - 0.5) * (x[1] - 0.5);
    }
    double x[3];
    for (size_t i = 0; i < 3; ++i)
        x[i] = argument(env.alphaArguments[i], s, env, &Colour::a);
    out.a = env.alphaScale * combined(env.alpha, x);
    if (env.rgb == GL_DOT3_RGB || env.rgb == GL_DOT3_RGBA) out.r = out.g = out.b = env.rgbScale * dot;
    if (env.rgb == GL_DOT3_RGBA) out.a = env.alphaScale * dot;
    return out;
}

void setEnvironment(const Environment &env)
{
    const GLfloat constant[] = {static_cast<GLfloat>(env.constant.r), static_cast<GLfloat>(env.constant.g),
                                static_cast<GLfloat>(env.constant.b), static_cast<GLfloat>(env.constant.a)};
    setEnv(GL_TEXTURE_ENV_MODE, env.mode);
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, constant);
    setEnv(GL_COMBINE_RGB, env.rgb);
    setEnv(GL_COMBINE_ALPHA, env.alpha);
    for (GLenum i = 0; i < 3; ++i) {
        setEnv(GL_SRC0_RGB + i, env.rgbArguments[i].source);
        setEnv(GL_OPERAND0_RGB + i, env.rgbArguments[i].operand);
        setEnv(GL_SRC0_ALPHA + i, env.alphaArguments[i].source);
        setEnv(GL_OPERAND0_ALPHA + i, env.alphaArguments[i].operand);
    }
    glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, static_cast<GLfloat>(env.rgbScale));
    glTexEnvf(GL_TEXTURE_ENV, GL_ALPHA_SCALE, static_cast<GLfloat>(env.alphaScale));
}

} // namespace

Colour textured(const Unit (&units)[2], const Colour &primary)
{
    Sources s = {{sampled(units[0].format, units[0].texel), sampled(units[1].format, units[1].texel)},
                 clamped(primary),
                 clamped(primary),
                 0};
    for (s.unit = 0; s.unit < 2; ++s.unit) {
        const Unit &unit = units[s.unit];
        if (!unit.enabled) continue;
        const Environment &env = unit.environment;
        s.previous =
            clamped(env.mode == GL_COMBINE ? combine(env, s) : simple(env, unit.format, s.texels[s.unit], s.previous));
    }
    return s.previous;
}

void setUnits(const Unit (&units)[2], const Colour &primary)
{
    for (const size_t i : {size_t{1}, size_t{0}}) {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(i));
        plainTexture(units[i].format, units[i].texel);
        (units[i].enabled ? glEnable : glDisable)(GL_TEXTURE_2D);
        setEnvironment(units[i].environment);
    }
    glColor4f(static_cast<GLfloat>(primary.r), static_cast<GLfloat>(primary.g), static_cast<GLfloat>(primary.b),
              static_cast<GLfloat>(primary.a));
}

Cell unitsCell(std::string why, const Unit &unit0, const Unit &unit1, const Colour &primary)
{
    const Unit units[2] = {unit0, unit1};
    return filledCell(
        std::move(why),
        [=] {
            const Unit both[2] = {unit0, unit1};
            setUnits(both, primary);
        },
        textured(units, primary));
}
