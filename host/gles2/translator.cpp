// SPDX-License-Identifier: MIT
#include "translator.h"

#include "doubled_vertex.h"
#include "gathered_uniforms.h"
#include "line_geometry.h"
#include "shader_scan.h"

#include <algorithm>
#include <set>

// How one shader is to be written. The same for both stages of a program.
struct Target {
    int version;                            // 100, 300, 310, 320
    bool raisePrecision;                    // lowp and mediump become highp
    Expansion doubled;                      // what the vertex shader's main runs twice for; None: it runs once
    bool expandLines;                       // fragments are those of a line's rectangle
    bool geometry;                          // a geometry shader stands between the stages
    bool colorPassed;                       // the fragment shader has its constant colour from the vertex shader
    Doubling doubling;                      // with `doubled`
    LineEnds ends;                          // of the lines' rectangles
    Gathering gathering;                    // of the vertex shader's uniforms
    std::set<std::string_view> flatNames;   // varyings that are flat in either stage: GLSL ES 3.00 wants both to agree
    std::set<std::string_view> passedNames; // varyings that the geometry shader hands on; empty without one
};

struct Renaming {
    std::string_view from;
    std::string_view to;
};

// Functions and variables that GLSL ES 3.00 knows under another name.
static constexpr Renaming kRenamedIn300[] = {
    {"texture2D", "texture"},
    {"textureCube", "texture"},
    {"texture2DProj", "textureProj"},
    {"texture2DLod", "textureLod"},
    {"texture2DProjLod", "textureProjLod"},
    {"textureCubeLod", "textureLod"},
    {"texture2DLodEXT", "textureLod"},
    {"texture2DProjLodEXT", "textureProjLod"},
    {"textureCubeLodEXT", "textureLod"},
    {"gl_FragColor", "trl20_FragColor"},
    {"gl_FragData", "trl20_FragData"},
    {"gl_FragDepthEXT", "gl_FragDepth"},
};

// Extensions of 1.00 that 3.00 has in itself and refuses to hear of.
static constexpr std::string_view kPartOf300[] = {
    "GL_OES_standard_derivatives", "GL_EXT_frag_depth", "GL_EXT_shader_texture_lod",
    "GL_EXT_draw_buffers",         "GL_OES_texture_3D",
};

// The constant colour: where it is loaded, and what hands it on.
static constexpr std::string_view kColorUniform = "gles_FragColor";
static constexpr const char *kColorVarying = "trl20_FlatColor";

static bool isBooleanType(std::string_view word)
{
    return word == "bool" || word == "bvec2" || word == "bvec3" || word == "bvec4";
}

// One shader on its way out.
struct Writer {
    const ShaderScan &scan;
    const Target &target;
    ShaderStage stage;
    std::string out;
};

static std::string_view solidText(const ShaderScan &scan, size_t at)
{
    const size_t next = nextSolid(scan.tokens, at);
    return next < scan.tokens.size() ? scan.tokens[next].text : std::string_view();
}

// Leaves out the tokens from `at` to before `end`, but for their line ends, so that later lines keep their numbers.
static void dropTokens(Writer &writer, size_t at, size_t end)
{
    if (writer.out.ends_with('\r')) writer.out += ' '; // a \n behind the gap would make one line end of the two
    for (; at < end; ++at)
        writer.out.append(countLineEnds(writer.scan.tokens[at].text), '\n');
}

// Leaves out one word and the blanks behind it on its line. Returns the index to go on at.
static size_t dropWord(Writer &writer, size_t at)
{
    const std::vector<Token> &tokens = writer.scan.tokens;
    size_t end = at + 1;
    while (end < tokens.size() && tokens[end].kind == TokenKind::Space)
        ++end;
    dropTokens(writer, at, end);
    return end;
}

static bool isDroppedExtension(const Writer &writer, std::string_view extension)
{
    if (extension == "GL_QRN_line_coord" || extension == "GL_QRN_fog_blend") return true;
    // Without such a sampler the request would only fail on drivers that lack the extension.
    if (extension == "GL_OES_EGL_image_external") return !writer.scan.externalSampler;
    if (writer.target.version < 300) return false;
    return std::find(std::begin(kPartOf300), std::end(kPartOf300), extension) != std::end(kPartOf300);
}

static bool isDroppedDirective(const Writer &writer, size_t hash)
{
    const std::string_view name = directiveWord(writer.scan.tokens, hash, 0);
    const std::string_view word = directiveWord(writer.scan.tokens, hash, 1);
    if (name == "pragma") return word == "GL_QRN_flat_varying";
    if (name == "version") return writer.target.version != 100; // the new one already stands on top
    return name == "extension" && isDroppedExtension(writer, word);
}

// True when the varyings declared by the keyword at `at` are flat in one of the stages.
static bool declaresFlat(const Writer &writer, size_t at)
{
    const std::vector<Token> &tokens = writer.scan.tokens;
    for (; at < tokens.size() && tokens[at].text != ";"; ++at) {
        if (tokens[at].kind == TokenKind::Identifier && writer.target.flatNames.count(tokens[at].text)) return true;
    }
    return false;
}

// The storage words of 3.00 for attribute and varying. Interpolation stands before storage.
static std::string storage300(const Writer &writer, size_t at)
{
    if (writer.scan.tokens[at].text == "attribute") return "in";
    const std::string direction = writer.stage == ShaderStage::Vertex ? "out" : "in";
    return declaresFlat(writer, at) ? "flat " + direction : direction;
}

static std::string identifier300(const Writer &writer, size_t at)
{
    const std::string_view word = writer.scan.tokens[at].text;
    if (word == "attribute" || word == "varying") return storage300(writer, at);
    if (word == "GL_OES_EGL_image_external" && writer.scan.tokens[at].inDirective)
        return "GL_OES_EGL_image_external_essl3";
    if (writer.stage == ShaderStage::Vertex && writer.target.passedNames.count(word))
        return kVertexVaryingPrefix + std::string(word);
    for (const Renaming &renaming : kRenamedIn300) {
        if (renaming.from == word) return std::string(renaming.to);
    }
    return std::string(word);
}

static std::string lineCoordExpression(const Writer &writer)
{
    if (!writer.target.expandLines) return "vec4(0.5)";
    return std::string("(") + kLineCoordVarying + " / " + kLineCoordVarying + ".w)";
}

// Writes an attribute's declaration as those of both sets. Returns the index to go on at.
static size_t writeDoubledAttributes(Writer &writer, size_t at)
{
    const std::vector<Token> &tokens = writer.scan.tokens;
    std::vector<Attribute> declared;
    size_t end = at;
    for (; tokens[end].text != ";"; ++end) {
        const auto attribute = std::find_if(writer.scan.attributes.begin(), writer.scan.attributes.end(),
                                            [&](const Attribute &a) { return a.name == tokens[end].text; });
        if (attribute != writer.scan.attributes.end()) declared.push_back(*attribute);
    }
    writer.out += doubledDeclarations(writer.target.doubling, declared);
    dropTokens(writer, at, end);
    return end + 1;
}

// Whether the keyword at `at` declares nothing but the constant colour.
static bool declaresColor(const ShaderScan &scan, size_t at)
{
    const std::vector<Token> &tokens = scan.tokens;
    if (tokens[at].text != "uniform" || tokens[at].inDirective) return false;
    size_t next = nextSolid(tokens, at + 1);
    if (next < tokens.size() && isPrecision(tokens[next].text)) next = nextSolid(tokens, next + 1);
    for (const std::string_view word : {std::string_view("vec4"), kColorUniform, std::string_view(";")}) {
        if (next >= tokens.size() || tokens[next].text != word) return false;
        next = nextSolid(tokens, next + 1);
    }
    return true;
}

static bool mentionsColor(const ShaderScan &scan)
{
    return std::any_of(scan.tokens.begin(), scan.tokens.end(),
                       [](const Token &token) { return token.text == kColorUniform; });
}

static bool canPassColor(const ShaderScan &vertex, const ShaderScan &fragment, const DriverAbilities &abilities)
{
    if (!abilities.essl300 || mentionsColor(vertex)) return false;
    if (fragment.externalSampler && !abilities.externalImageEssl300) return false;
    for (size_t at = 0; at < fragment.tokens.size(); ++at)
        if (declaresColor(fragment, at)) return true;
    return false;
}

// Writes the identifier at `at`. Returns the index to go on at.
static size_t writeIdentifier(Writer &writer, size_t at)
{
    const std::string_view word = writer.scan.tokens[at].text;
    const std::string_view next = solidText(writer.scan, at + 1);
    if (isPrecision(word) && isBooleanType(next)) return dropWord(writer, at);
    if (word == "flat" && next == "varying") return dropWord(writer, at); // 3.00 gets it back from storage300
    if (word == "invariant" && next == "varying" && writer.target.version >= 300 &&
        writer.stage == ShaderStage::Fragment)
        return dropWord(writer, at);
    const bool doubled = writer.target.doubled != Expansion::None && writer.stage == ShaderStage::Vertex;
    const bool cut = writer.target.doubled == Expansion::Lines && writer.stage == ShaderStage::Fragment;
    if (doubled && word == "attribute") return writeDoubledAttributes(writer, at);

    const bool passed = writer.target.colorPassed;
    const bool passedTo = passed && writer.stage == ShaderStage::Fragment;

    if (writer.target.raisePrecision && isPrecision(word))
        writer.out += "highp";
    else if (passedTo && declaresColor(writer.scan, at))
        writer.out += "flat in";
    else if (passedTo && word == kColorUniform)
        writer.out += kColorVarying;
    else if (word == "gl_LineCoord" && writer.stage == ShaderStage::Fragment)
        writer.out += lineCoordExpression(writer);
    else if (word == "gl_FrontFacing" && writer.target.expandLines)
        writer.out += "true"; // a line is always seen from its front; the rectangle made of it need not be
    else if ((doubled || cut || (passed && !passedTo)) && word == "main")
        writer.out += kGivenMain;
    else if (word == "gl_FogFactor")
        writer.out += "trl20_FogFactor";
    else if (writer.target.version >= 300)
        writer.out += identifier300(writer, at);
    else
        writer.out += word;
    return at + 1;
}

// Declarations that the rewritten text relies on. Empty when there are none.
static std::string declarations(const Writer &writer)
{
    if (writer.stage != ShaderStage::Fragment) {
        std::string text = writer.scan.fogFactor ? "float trl20_FogFactor;" : "";
        if (writer.target.colorPassed && writer.target.gathering.vectors == 0)
            text += "uniform highp vec4 " + std::string(kColorUniform) + "; ";
        if (writer.target.colorPassed) text += std::string("flat out highp vec4 ") + kColorVarying + "; ";
        return text;
    }
    const std::string precision = writer.target.raisePrecision ? "highp " : "mediump ";
    std::string text;
    // The default of samplers is lowp, and what they return would be computed on in that precision.
    if (writer.target.raisePrecision) {
        text += "precision highp float; precision highp int; precision highp sampler2D; precision highp samplerCube; ";
        if (writer.scan.externalSampler) text += "precision highp samplerExternalOES; ";
    }
    if (writer.scan.fogFactor) text += precision + "float trl20_FogFactor; ";
    if (writer.target.version >= 300) {
        if (writer.scan.fragColor) text += kFragColorOutput;
        if (writer.scan.fragData) text += "layout(location = 0) out highp vec4 trl20_FragData[gl_MaxDrawBuffers]; ";
    }
    if (writer.target.expandLines && (writer.scan.lineCoord || writer.target.doubled == Expansion::Lines))
        text +=
            (writer.target.version >= 300 ? "in highp " : "varying " + precision) + "vec4 " + kLineCoordVarying + "; ";
    return text;
}

// A directive has to start its line, so declarations before one take a line of their own, which must not count.
static void writeDeclarations(Writer &writer)
{
    const std::string text = declarations(writer);
    if (text.empty()) return;
    const std::vector<Token> &tokens = writer.scan.tokens;
    const size_t at = writer.scan.declarationsAt;
    size_t next = at;
    while (next < tokens.size() && isBlank(tokens[next]) && tokens[next].kind != TokenKind::LineEnd)
        ++next;
    writer.out += text;
    if (next >= tokens.size() || tokens[next].kind != TokenKind::Hash) return;

    int line = 1;
    for (size_t before = 0; before < at; ++before)
        line += countLineEnds(tokens[before].text);
    writer.out += "\n#line " + std::to_string(line) + "\n";
}

// The first line of a text in another version than 100. The text itself still starts at line 1.
static std::string versionHeader(int version)
{
    return "#version " + std::to_string(version) + " es\n";
}

static std::string doubledMain(const ShaderScan &scan, const Target &target)
{
    if (target.doubled == Expansion::FlatShading) return flatMain(scan, target.doubling);
    if (target.doubled == Expansion::Lines) return lineMain(scan, target.doubling, target.ends);
    return {};
}

static std::string colorMain(const Gathering &gathering)
{
    const std::string color =
        gathering.vectors > 0 ? gatheredVector(gathering.vectors - 1) : std::string(kColorUniform);
    return std::string("\nvoid main()\n{\n    ") + kGivenMain + "();\n    " + kColorVarying + " = " + color + ";\n}\n";
}

// Writes what stands for the tokens at `at` where uniforms are gathered. False when they stand for themselves.
static bool writeGathered(Writer &writer, size_t &at)
{
    if (writer.stage != ShaderStage::Vertex) return false;
    const auto found = writer.target.gathering.rewritings.find(at);
    if (found == writer.target.gathering.rewritings.end()) return false;
    writer.out += found->second.text;
    dropTokens(writer, at, found->second.end);
    at = found->second.end;
    return true;
}

static std::string writeShader(ShaderStage stage, const ShaderScan &scan, const Target &target)
{
    Writer writer{.scan = scan, .target = target, .stage = stage, .out = {}};
    if (target.version != 100) writer.out = versionHeader(target.version) + "#line 1\n";
    for (size_t at = 0; at < scan.tokens.size();) {
        if (at == scan.declarationsAt) writeDeclarations(writer);
        const Token &token = scan.tokens[at];
        if (writeGathered(writer, at)) continue;
        if (token.kind == TokenKind::Hash && isDroppedDirective(writer, at)) {
            const size_t end = directiveEnd(scan.tokens, at);
            dropTokens(writer, at, end);
            at = end;
        } else if (token.kind == TokenKind::Identifier) {
            at = writeIdentifier(writer, at);
        } else {
            writer.out += token.text;
            ++at;
        }
    }
    if (scan.declarationsAt >= scan.tokens.size()) writeDeclarations(writer);
    if (stage == ShaderStage::Vertex) writer.out += doubledMain(scan, target);
    if (stage == ShaderStage::Vertex && target.colorPassed) writer.out += colorMain(target.gathering);
    if (stage == ShaderStage::Fragment && target.doubled == Expansion::Lines) writer.out += lineFragmentMain();
    return std::move(writer.out);
}

static void collectFlat(const ShaderScan &scan, std::set<std::string_view> &names)
{
    for (const Varying &varying : scan.varyings) {
        if (varying.flat) names.insert(varying.name);
    }
}

// Version of the geometry shader and of the stages around it; 0 when the driver has no such stage.
static int geometryVersion(const DriverAbilities &abilities)
{
    if (abilities.geometryEssl320) return 320;
    return abilities.geometryExtensionEssl310.empty() ? 0 : 310;
}

static std::string geometryHeader(const DriverAbilities &abilities)
{
    const int version = geometryVersion(abilities);
    if (version == 320) return versionHeader(version);
    return versionHeader(version) + "#extension " + abilities.geometryExtensionEssl310 + " : require\n";
}

// The wishes of one or two shaders together.
static Target chooseTarget(const DriverAbilities &abilities, const ShaderScan &scan, bool wantsLines)
{
    Target target{.version = 100,
                  .raisePrecision = abilities.fragmentHighp,
                  .doubled = Expansion::None,
                  .expandLines = false,
                  .geometry = false,
                  .colorPassed = false,
                  .doubling = {},
                  .ends = scan.lineCoord ? LineEnds::Square : LineEnds::Upright,
                  .gathering = {},
                  .flatNames = {},
                  .passedNames = {}};
    if (scan.externalSampler && !abilities.externalImageEssl300) return target;
    if (wantsLines && scan.varyingsAreSimple && geometryVersion(abilities)) {
        target.version = geometryVersion(abilities);
        target.expandLines = true;
        target.geometry = true;
    } else if (scan.flat && abilities.essl300) {
        target.version = 300;
    }
    return target;
}

// Where version and geometry shader do not bring what the expansion is to bring, main has to run twice: in 1.00, since
// flat varyings come along with it.
static void doubleVertex(Target &target, const ShaderScan &vertexScan, Expansion expansion)
{
    const bool needed =
        expansion == Expansion::Lines ? !target.geometry : expansion == Expansion::FlatShading && target.version == 100;
    if (!needed || !canDouble(vertexScan)) return;
    target.version = 100;
    target.doubled = expansion;
    target.expandLines = expansion == Expansion::Lines;
}

TranslatedProgram translateProgram(const std::string &vertex, const std::string &fragment,
                                   const DriverAbilities &abilities, Expansion expansion)
{
    TranslatedProgram program;
    const ShaderScan vertexScan = scanShader(vertex);
    const ShaderScan fragmentScan = scanShader(fragment);
    if (vertexScan.ownVersion || fragmentScan.ownVersion) {
        program.vertex = vertex;
        program.fragment = fragment;
        program.version = 0;
        return program;
    }

    ShaderScan both{};
    both.flat = vertexScan.flat || fragmentScan.flat;
    both.lineCoord = fragmentScan.lineCoord;
    both.externalSampler = vertexScan.externalSampler || fragmentScan.externalSampler;
    both.varyingsAreSimple = vertexScan.varyingsAreSimple;
    Target target = chooseTarget(abilities, both, both.lineCoord || expansion == Expansion::Lines);
    doubleVertex(target, vertexScan, expansion);
    if (!target.geometry && target.doubled == Expansion::None && canPassColor(vertexScan, fragmentScan, abilities)) {
        target.colorPassed = true;
        target.version = 300;
    }
    if (target.version != 100 || target.doubled != Expansion::None) {
        collectFlat(vertexScan, target.flatNames);
        collectFlat(fragmentScan, target.flatNames);
    }
    if (target.doubled != Expansion::None) {
        const bool lines = target.doubled == Expansion::Lines;
        target.doubling = (lines ? planLines : planFlat)(vertexScan, target.flatNames);
    }
    if (target.geometry) {
        std::vector<Varying> varyings = vertexScan.varyings;
        for (Varying &varying : varyings) {
            varying.flat = target.flatNames.count(varying.name) != 0;
            target.passedNames.insert(varying.name);
        }
        program.geometry = lineGeometryShader(geometryHeader(abilities), varyings, target.ends);
    }
    if (abilities.gatheredVectors > 0 && target.doubled == Expansion::None)
        target.gathering =
            gatherUniforms(vertexScan, fragmentScan, target.colorPassed ? kColorUniform : std::string_view(),
                           abilities.gatheredVectors);
    program.gathered = target.gathering.uniforms;
    program.vertex = writeShader(ShaderStage::Vertex, vertexScan, target);
    program.fragment = writeShader(ShaderStage::Fragment, fragmentScan, target);
    program.version = target.version;
    program.doubled = target.doubled != Expansion::None;
    program.flatLost = both.flat && target.version == 100 && target.doubled == Expansion::None;
    program.lineCoordLost = both.lineCoord && !target.expandLines;
    return program;
}

std::string translateShader(ShaderStage stage, const std::string &source, const DriverAbilities &abilities)
{
    const ShaderScan scan = scanShader(source);
    if (scan.ownVersion) return source;
    Target target = chooseTarget(abilities, scan, stage == ShaderStage::Fragment && scan.lineCoord);
    if (target.version != 100) collectFlat(scan, target.flatNames);
    return writeShader(stage, scan, target);
}
