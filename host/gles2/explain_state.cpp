// SPDX-License-Identifier: MIT
// The generated texts have a fixed wording; each piece of state leaves its own line in them.
#include "explain_state.h"

#include <algorithm>
#include <string_view>

using Phrases = std::vector<std::string>;

static constexpr int kTextureUnits = 2;

// A line of the texts and the state that it stands for.
struct Mark {
    std::string_view line;
    const char *state;
};

static constexpr Mark kVertexMarks[] = {
    {"    gl_Position = gles_Vertex;", "draw-texture"},
    {"color * gles_Color + gles_Material.emission", "GL_COLOR_MATERIAL"},
    {"    return normalize(normal);", "normals made unit length"},
    {"    vec3 normal = v;", "normals stay in object space"},
    {"gles_alphaFactor;", "alpha factor"},
    {"gl_PointSize = ", "points"},
    {"uniform vec3       gles_PointDistanceAttenuation", "GL_POINT_DISTANCE_ATTENUATION"},
    {"    /* scale + translation */", "transform: scale and translation only"},
};

static constexpr Mark kFogMarks[] = {
    {"(gles_FogEnd - z)", "fog: GL_LINEAR"},
    {"exp2(-gles_FogDensity * z * invloge2)", "fog: GL_EXP"},
    {"exp2(-gles_FogDensity * z * gles_FogDensity", "fog: GL_EXP2"},
};

static constexpr Mark kFragmentMarks[] = {
    {"gles_FragColorBack", "GL_LIGHT_MODEL_TWO_SIDE"},
    {"#pragma GL_QRN_flat_varying", "GL_FLAT"},
    {"userClipNeg", "GL_CLIP_PLANE0"},
    {"    discard;    ", "alpha test: GL_NEVER"},
    {"currentColor.a  < gles_AlphaRef", "alpha test: GL_LESS"},
    {"currentColor.a == gles_AlphaRef", "alpha test: GL_EQUAL"},
    {"currentColor.a <= gles_AlphaRef", "alpha test: GL_LEQUAL"},
    {"currentColor.a  > gles_AlphaRef", "alpha test: GL_GREATER"},
    {"currentColor.a != gles_AlphaRef", "alpha test: GL_NOTEQUAL"},
    {"currentColor.a >= gles_AlphaRef", "alpha test: GL_GEQUAL"},
    {"aaInnerRing", "GL_POINT_SMOOTH"},
    {"gles_LineWidth", "GL_LINE_SMOOTH"},
};

static bool has(std::string_view text, std::string_view piece)
{
    return text.find(piece) != std::string_view::npos;
}

static int countOf(std::string_view text, std::string_view piece)
{
    int count = 0;
    for (size_t at = text.find(piece); at != std::string_view::npos; at = text.find(piece, at + piece.size()))
        ++count;
    return count;
}

template <size_t count>
static void addMarks(Phrases &state, std::string_view text, const Mark (&marks)[count])
{
    for (const Mark &mark : marks) {
        if (has(text, mark.line)) state.emplace_back(mark.state);
    }
}

// The text's next line without its end, which is taken off the text.
static std::string_view takeLine(std::string_view &text)
{
    const size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

static std::string_view trimmed(std::string_view line)
{
    const size_t first = line.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    line.remove_prefix(first);
    line.remove_suffix(line.size() - 1 - line.find_last_not_of(" ;"));
    return line;
}

static void append(std::string &list, std::string_view item)
{
    if (!list.empty()) list += ", ";
    list += item;
}

static void addLighting(Phrases &state, std::string_view vertex)
{
    static constexpr struct {
        std::string_view call;
        const char *kind;
    } kinds[] = {
        {"    processDirectionalLight(gles_LS", "directional"},
        {"    processPointLight(gles_LS", "point"},
        {"    processSpotLight(gles_LS", "spot"},
    };
    if (!has(vertex, "vec4 flight(")) return;
    std::string lights;
    for (std::string_view rest = vertex; !rest.empty();) {
        const std::string_view line = takeLine(rest);
        for (const auto &row : kinds) {
            if (line.starts_with(row.call)) append(lights, row.kind);
        }
    }
    state.push_back("GL_LIGHTING: " + (lights.empty() ? "no light" : lights));
    if (!has(vertex, "    Specular = vec4(0.0);")) state.emplace_back("no specular light");
}

static void addColor(Phrases &state, std::string_view vertex, std::string_view fragment)
{
    if (!has(vertex, "vec4 flight(") && !has(fragment, "uniform mediump vec4        gles_FragColor;"))
        state.emplace_back("colour per vertex");
}

static void addTransform(Phrases &state, std::string_view vertex)
{
    const int matrices = countOf(vertex, " * MV_palette[int(");
    if (matrices) state.push_back("GL_MATRIX_PALETTE_OES: " + std::to_string(matrices) + " per vertex");
    const int rows = countOf(vertex, "dot(gles_ModelViewProjectionMatrix[");
    if (rows) state.push_back("transform: first " + std::to_string(rows) + " of 4 rows");
    if (has(vertex, "return vec4(gles_Vertex.x")) state.emplace_back("transform: none");
}

static void addFog(Phrases &state, std::string_view vertex, std::string_view fragment)
{
    addMarks(state, vertex, kFogMarks);
    if (has(vertex, "= gles_FogCoord;")) state.emplace_back("fog coordinate");
    if (has(fragment, "    gl_FogFactor = gles_FogFactor;")) state.emplace_back("fog blended by the device");
}

// What the environments of the units do with their textures, in the fragment text's own order.
struct UnitStages {
    std::string text[kTextureUnits]; // empty for a unit without one
};

// The lines of a combiner from behind its comment to the limiting of its result, which every combiner has.
static std::string takeCombiner(std::string_view &rest)
{
    std::string lines;
    for (;;) {
        const std::string_view line = trimmed(takeLine(rest));
        if (line.empty() || line.starts_with("currentColor = clamp(")) return "GL_COMBINE (" + lines + ")";
        append(lines, line);
    }
}

// The texture's components that a classic environment uses, and the environment's name from the comment.
static std::string classicStage(std::string_view statements, const std::string &texture)
{
    const bool all = has(statements, texture + ";");
    const bool color = all || has(statements, texture + ".rgb");
    const bool alpha = all || has(statements, texture + ".a");
    const size_t name = statements.find("// ") + 3;
    const std::string_view environment = statements.substr(name, statements.find('\n', name) - name);
    return std::string(environment) + " of " + (color && alpha ? "colour and alpha" : color ? "colour" : "alpha");
}

static UnitStages readStages(std::string_view fragment, const bool (&enabled)[kTextureUnits])
{
    UnitStages stages;
    std::string classic[kTextureUnits];
    int combined = enabled[0] ? 0 : 1; // the unit of the next combiner
    for (std::string_view rest = fragment; !rest.empty();) {
        const std::string_view line = takeLine(rest);
        if (line == "    // GL_COMBINE") {
            // Stages come by unit, and only a unit without a classic environment has a combiner.
            if (combined == 0 && !classic[0].empty()) combined = 1;
            if (combined >= kTextureUnits) break;
            stages.text[combined++] = takeCombiner(rest);
        } else if (has(line, "// GL_")) {
            for (int unit = 0; unit < kTextureUnits; ++unit) {
                if (has(line, "texture" + std::to_string(unit))) classic[unit] += std::string(line) + '\n';
            }
        }
    }
    for (int unit = 0; unit < kTextureUnits; ++unit) {
        if (!classic[unit].empty()) stages.text[unit] = classicStage(classic[unit], "texture" + std::to_string(unit));
    }
    return stages;
}

static void addUnit(Phrases &state, std::string_view vertex, std::string_view fragment, int unit,
                    const std::string &stage)
{
    const std::string number = std::to_string(unit);
    const std::string sampler = " gles_sampler" + number;
    std::string phrase = "texture " + number + ": ";
    phrase += has(fragment, "samplerCube" + sampler)          ? "cube map"
              : has(fragment, "samplerExternalOES" + sampler) ? "external image"
                                                              : "2D";
    append(phrase, stage);
    if (has(vertex, "gles_TexCoord" + number + " = ftexgen_normal") ||
        has(vertex, "gles_Texture" + number + "Matrix * ftexgen_normal"))
        append(phrase, "GL_NORMAL_MAP_OES");
    if (has(vertex, "gles_TexCoord" + number + " = ftexgen_reflection") ||
        has(vertex, "gles_Texture" + number + "Matrix * ftexgen_reflection"))
        append(phrase, "GL_REFLECTION_MAP_OES");
    if (has(vertex, "uniform mat4       gles_Texture" + number + "Matrix")) append(phrase, "texture matrix");
    if (has(vertex, "uniform vec4       gles_Texture" + number + "Matrix")) append(phrase, "texture matrix (scale)");
    if (has(fragment, "texture2DProj(gles_sampler" + number)) append(phrase, "divided by q");
    if (has(fragment, "(gles_sampler" + number + ", gl_PointCoord") ||
        has(fragment, "(gles_sampler" + number + ", vec3(gl_PointCoord"))
        append(phrase, "GL_COORD_REPLACE_OES");
    state.push_back(phrase);
}

static void addUnits(Phrases &state, std::string_view vertex, std::string_view fragment)
{
    bool enabled[kTextureUnits];
    for (int unit = 0; unit < kTextureUnits; ++unit)
        enabled[unit] = has(fragment, " gles_sampler" + std::to_string(unit) + ";");
    const UnitStages stages = readStages(fragment, enabled);
    for (int unit = 0; unit < kTextureUnits; ++unit) {
        if (enabled[unit]) addUnit(state, vertex, fragment, unit, stages.text[unit]);
    }
    if (has(fragment, "gles_TexCoordPacked")) state.emplace_back("both coordinates in one varying");
}

Phrases stateOfTexts(const std::string &vertex, const std::string &fragment)
{
    Phrases state;
    addLighting(state, vertex);
    addColor(state, vertex, fragment);
    addTransform(state, vertex);
    addMarks(state, vertex, kVertexMarks);
    addMarks(state, fragment, kFragmentMarks);
    addFog(state, vertex, fragment);
    addUnits(state, vertex, fragment);
    return state;
}

Phrases phrasesNotIn(const Phrases &state, const Phrases &other)
{
    Phrases rest;
    std::copy_if(state.begin(), state.end(), std::back_inserter(rest), [&](const std::string &phrase) {
        return std::find(other.begin(), other.end(), phrase) == other.end();
    });
    return rest;
}
