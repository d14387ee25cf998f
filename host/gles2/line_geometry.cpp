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

// The direction needs no division by w: it is that of the derivative of xy / w along the line, wherever w is above
// zero.
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

static constexpr const char *kGeometryMain = R"(
void emitEnd(vec4 position, float t, vec2 offset, float y)
{
    passVaryings(t);
    trl20_LineCoord = vec4(t, y, 0.0, 1.0) * position.w;
    gl_Position = position + vec4(offset * position.w, 0.0, 0.0);
    EmitVertex();
}

void main()
{
    vec4 a = gl_in[0].gl_Position;
    vec4 b = gl_in[1].gl_Position;
    if (trl20_isOutside(a, b)) return;

    // An end behind the eye has no place on the screen: the line is cut at the near plane first.
    float nearA = a.z + a.w;
    float nearB = b.z + b.w;
    float t0 = nearA < 0.0 ? nearA / (nearA - nearB) : 0.0;
    float t1 = nearB < 0.0 ? nearA / (nearA - nearB) : 1.0;
    vec4 p = mix(a, b, t0);
    vec4 q = mix(a, b, t1);
    if (p.w <= 0.0 || q.w <= 0.0) return;
    vec2 offset = trl20_lineOffset(p, q);
    emitEnd(p, t0, -offset, 0.0);
    emitEnd(q, t1, -offset, 0.0);
    emitEnd(p, t0, offset, 1.0);
    emitEnd(q, t1, offset, 1.0);
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
    std::string body = "\nvoid passVaryings(float t)\n{\n";
    for (const Varying &varying : varyings) {
        const std::string name(varying.name);
        const std::string given = kVertexVaryingPrefix + name;
        const std::string qualifier = varying.flat ? "flat " : "";
        const std::string type(varying.type);
        declarations += qualifier + "in " + type + " " + given + "[];\n";
        declarations += qualifier + "out " + type + " " + name + ";\n";
        body += "    " + name + " = ";
        body += varying.flat ? given + "[1];\n" : given + "[0] * (1.0 - t) + " + given + "[1] * t;\n";
    }
    return declarations + body + "}\n";
}

std::string lineGeometryShader(const std::string &header, const std::vector<Varying> &varyings, LineEnds ends)
{
    return header + kGeometryHead + lineFunctions(ends) + passVaryings(varyings) + kGeometryMain;
}
