// SPDX-License-Identifier: MIT
#include "line_geometry.h"

#include "translator.h"

static constexpr const char *kGeometryHead = R"(layout(lines) in;
layout(triangle_strip, max_vertices = 4) out;
precision highp float;
out vec4 trl20_LineCoord;
)";

static constexpr const char *kUniforms = R"(uniform vec2 trl20_ViewportSize;
uniform float trl20_LineWidth;
)";

// An end behind the eye has no place on the screen. The line's direction there needs none: it is the derivative of
// xy / w along the line, which has the direction below wherever w is above zero.
static constexpr const char *kFunctions = R"(
bool trl20_isOutside(vec4 a, vec4 b)
{
    return (a.x > a.w && b.x > b.w) || (a.x < -a.w && b.x < -b.w) || (a.y > a.w && b.y > b.w) ||
           (a.y < -a.w && b.y < -b.w) || (a.z < -a.w && b.z < -b.w);
}

vec2 trl20_lineOffset(vec4 a, vec4 b)
{
    vec2 pixels = 0.5 * trl20_ViewportSize;
    vec2 along = (b.xy * a.w - a.xy * b.w) * pixels;
    float size = max(abs(along.x), abs(along.y));
    if (!(size > 0.0)) return vec2(0.0);
    along /= size;
)";

static constexpr const char *kSquareAcross = "    vec2 across = normalize(vec2(-along.y, along.x));\n";
static constexpr const char *kUprightAcross =
    "    vec2 across = abs(along.x) >= abs(along.y) ? vec2(0.0, 1.0) : vec2(1.0, 0.0);\n";
static constexpr const char *kOffsetTail = "    return across * (0.5 * trl20_LineWidth) / pixels;\n}\n";

// With the offset in normalised device coordinates, and so times w, the corners stay right when an end behind the eye
// is clipped: every point of the line is widened by the same number of pixels.
static constexpr const char *kGeometryMain = R"(
void emitEnd(int end, vec2 offset, float y)
{
    passVaryings(end);
    vec4 position = gl_in[end].gl_Position;
    trl20_LineCoord = vec4(float(end), y, 0.0, 1.0) * position.w;
    gl_Position = position + vec4(offset * position.w, 0.0, 0.0);
    EmitVertex();
}

void main()
{
    if (trl20_isOutside(gl_in[0].gl_Position, gl_in[1].gl_Position)) return;
    vec2 offset = trl20_lineOffset(gl_in[0].gl_Position, gl_in[1].gl_Position);
    emitEnd(0, -offset, 0.0);
    emitEnd(1, -offset, 0.0);
    emitEnd(0, offset, 1.0);
    emitEnd(1, offset, 1.0);
}
)";

std::string lineFunctions(LineEnds ends)
{
    return std::string(kUniforms) + kFunctions + (ends == LineEnds::Square ? kSquareAcross : kUprightAcross) +
           kOffsetTail;
}

// A flat varying takes the value of the line's last vertex, as a line without expansion does.
static std::string passVaryings(const std::vector<Varying> &varyings)
{
    std::string declarations;
    std::string body = "\nvoid passVaryings(int end)\n{\n";
    for (const Varying &varying : varyings) {
        const std::string name(varying.name);
        const std::string given = kVertexVaryingPrefix + name;
        const std::string qualifier = varying.flat ? "flat " : "";
        const std::string type(varying.type);
        declarations += qualifier + "in " + type + " " + given + "[];\n";
        declarations += qualifier + "out " + type + " " + name + ";\n";
        body += "    " + name + " = ";
        body += varying.flat ? given + "[1];\n" : given + "[end];\n";
    }
    return declarations + body + "}\n";
}

std::string lineGeometryShader(const std::string &header, const std::vector<Varying> &varyings, LineEnds ends)
{
    return header + kGeometryHead + lineFunctions(ends) + passVaryings(varyings) + kGeometryMain;
}
