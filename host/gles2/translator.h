// SPDX-License-Identifier: MIT
// Shader text of the device's compiler made fit for a standard GLSL ES compiler. Uniform and attribute names, line
// numbers and everything not named here stay as they are.
//
//   given                                     becomes
//   precision qualifier before a bool type    nothing
//   flat varying                              GLSL ES 3.00; smooth where the driver has only 1.00
//   #pragma GL_QRN_flat_varying               nothing
//   #extension GL_QRN_line_coord, fog_blend   nothing
//   gl_LineCoord                              an input from a generated geometry shader; else the line's middle
//   gl_FogFactor                              a variable that nothing reads: fog is blended in the text itself
//   #extension GL_OES_EGL_image_external      nothing when no external sampler is used; _essl3 in 3.00
//   lowp, mediump, no default in fragments    highp, where fragment shaders have it
//   uniform vec4 gles_FragColor in fragments  the same in the vertex shader, handed on flat, in GLSL ES 3.00: a uniform
//                                             of the fragments that changes with every draw doubles the draw's time on
//                                             llvmpipe. Flat, the fragments get the same bits
//   uniforms of the vertex shader alone       places in one array, where that is asked for: see gathered_uniforms.h
//
// Where that loses something, or where lines are wider than the driver's, draws need another program for the same
// texts: an expanded one. See Expansion.
#pragma once

#include <string>
#include <vector>

/// What the driver and its shader compiler can do. The default is the least that OpenGL ES 2.0 promises.
struct DriverAbilities {
    bool fragmentHighp = false;                // highp float in fragment shaders
    bool essl300 = false;                      // #version 300 es
    bool externalImageEssl300 = false;         // GL_OES_EGL_image_external_essl3
    bool geometryEssl320 = false;              // #version 320 es, with geometry shaders in it
    std::string geometryExtensionEssl310 = {}; // geometry shaders as an extension of 310 es: its name; empty = none
    bool levelQueries = false;                 // glGetTexLevelParameteriv, OpenGL ES 3.1
    float widestLine = 1.0f;                   // pixels
    std::string framebufferFetch = {};         // the extension by which fragments read the colour buffer; empty = none
    int vertexAttributes = 8;                  // of one vertex
    int gatheredVectors = 0;                   // most that uniforms are gathered into; 0: they are left alone
};

enum class ShaderStage { Vertex, Fragment };

/// What a program is made for. Flat shading and lines without a geometry shader run the vertex shader's main twice, see
/// doubled_vertex.h: their draws bring a second set of attributes.
enum class Expansion {
    None,
    FlatShading, // flat varyings on a driver with GLSL ES 1.00 alone
    Lines,       // lines as rectangles
};
inline constexpr int kExpansions = 3;

/// A uniform of the given text that is a place in the array kGatheredUniforms of the translated one.
struct GatheredUniform {
    std::string name; // without a "[0]"; of a structure's member with a dot in it
    std::string type; // float, or a vector or matrix of floats
    int elements;     // 1 for a single value
    bool isArray;
    int vector; // the first of its vectors in the array; each element, or each of a matrix' columns, has one
};

struct TranslatedProgram {
    std::string vertex;
    std::string geometry; // empty: the program has no such stage
    std::string fragment;
    int version = 100;          // GLSL ES version of all stages: 100, 300, 310 or 320; 0 when a text named its own
    bool flatLost = false;      // flat shading was asked for and is drawn smooth
    bool lineCoordLost = false; // gl_LineCoord was asked for and is constant: lines are not smoothed
    std::vector<GatheredUniform> gathered; // in the order of their places
    bool doubled = false;                  // main runs twice: the draw brings both sets of attributes
};

/// The declaration of the colour in a fragment shader of version 300 and above that writes one.
inline constexpr const char *kFragColorOutput = "out highp vec4 trl20_FragColor; ";

/// Names in the expansion of lines, for whoever loads them: the viewport's size and the line's width, in pixels.
inline constexpr const char *kViewportSizeUniform = "trl20_ViewportSize"; // vec2
inline constexpr const char *kLineWidthUniform = "trl20_LineWidth";       // float

/// The array of vec4 that uniforms are gathered into.
inline constexpr const char *kGatheredUniforms = "trl20_Uniforms";

/// Both shaders of a program, in one version of the language. A program whose text names a #version other than 100 is
/// handed back unchanged. An expansion that the texts do not allow leaves what it was to bring back lost.
TranslatedProgram translateProgram(const std::string &vertex, const std::string &fragment,
                                   const DriverAbilities &abilities, Expansion expansion = Expansion::None);

/// One shader by itself, to answer whether it compiles. The version is the one its own text needs; in a program it may
/// become a higher one.
std::string translateShader(ShaderStage stage, const std::string &source, const DriverAbilities &abilities);
