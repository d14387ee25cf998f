// SPDX-License-Identifier: MIT
#include "shadergen/fragment_combine.h"

#include "frontend/assert.h"
#include "shadergen/generators.h"

const char *srcsel_str(const ProgramKey &key, uint32_t source, uint32_t unit)
{
    static constexpr const char *kWhite = "vec4(1.0, 1.0, 1.0, 1.0)"; // what a disabled unit's texture counts as
    switch (source) {
    case SOURCE_TEXTURE:
        return unit == 0 ? "texture0" : "texture1";
    case SOURCE_TEXTURE0:
        return key.state.unit[0].enabled ? "texture0" : kWhite;
    case SOURCE_TEXTURE1:
        return key.state.unit[1].enabled ? "texture1" : kWhite;
    case SOURCE_CONSTANT:
        return unit == 0 ? "gles_TexEnvColor[0]" : "gles_TexEnvColor[1]";
    case SOURCE_PRIMARY_COLOR:
        return "gles_FragColor"; // the front colour, on back faces too
    case SOURCE_PREVIOUS:
        return "currentColor";
    default:
        assertThat(false, "shader key: combiner source is 1 to 6");
        return "";
    }
}

namespace {

uint32_t argumentCount(const CombineBlock &block)
{
    if (block.envRgb == COMBINE_INTERPOLATE || block.envAlpha == COMBINE_INTERPOLATE) return 3;
    if (block.envRgb == COMBINE_REPLACE && block.envAlpha == COMBINE_REPLACE) return 1;
    return 2;
}

// Colour and alpha of the argument are the same four components.
bool isWholeArgument(const CombineArg &rgb, const CombineArg &alpha)
{
    if (rgb.source != alpha.source) return false;
    if (rgb.operand == OPERAND_SRC_COLOR) return alpha.operand == OPERAND_SRC_ALPHA;
    return rgb.operand == OPERAND_ONE_MINUS_SRC_COLOR && alpha.operand == OPERAND_ONE_MINUS_SRC_ALPHA;
}

void emitWholeArgument(uint32_t operand, int i, const char *source, strbuf *out)
{
    if (operand == OPERAND_SRC_COLOR) {
        strbuf_print(out, "    arg%i = vec4(%s.rgba);\n", i, source);
    } else {
        strbuf_print(out, "    arg%i = vec4(1.0 - %s.rgba);\n", i, source);
    }
}

void emitColorPiece(uint32_t operand, int i, const char *source, strbuf *out)
{
    switch (operand) {
    case OPERAND_SRC_ALPHA:
        strbuf_print(out, "    arg%i = vec4(vec3(%s.a), ", i, source);
        break;
    case OPERAND_ONE_MINUS_SRC_ALPHA:
        strbuf_print(out, "    arg%i = vec4(vec3(1.0 - %s.a), ", i, source);
        break;
    case OPERAND_SRC_COLOR:
        strbuf_print(out, "    arg%i = vec4(%s.rgb, ", i, source);
        break;
    case OPERAND_ONE_MINUS_SRC_COLOR:
        strbuf_print(out, "    arg%i = vec4(1.0 - %s.rgb, ", i, source);
        break;
    }
}

void emitAlphaPiece(uint32_t operand, const char *source, strbuf *out)
{
    switch (operand) {
    case OPERAND_SRC_ALPHA:
        strbuf_print(out, "%s.a);\n", source);
        break;
    case OPERAND_ONE_MINUS_SRC_ALPHA:
        strbuf_print(out, "1.0 - %s.a);\n", source);
        break;
    default:
        assertThat(false, "shader key: an alpha operand is 0 or 1");
    }
}

void emitCombineArgs(const ProgramKey &key, uint32_t unit, strbuf *out)
{
    const CombineBlock &block = key.state.combine[unit];
    const uint32_t count = argumentCount(block);
    for (uint32_t i = 0; i < count; ++i) {
        const CombineArg &rgb = block.rgbArg[i];
        const CombineArg &alpha = block.alphaArg[i];
        const int number = static_cast<int>(i);
        const char *source = srcsel_str(key, rgb.source, unit);
        if (isWholeArgument(rgb, alpha)) {
            emitWholeArgument(rgb.operand, number, source, out);
        } else {
            emitColorPiece(rgb.operand, number, source, out);
            emitAlphaPiece(alpha.operand, srcsel_str(key, alpha.source, unit), out);
        }
    }
}

const char *combineFunction(uint32_t code)
{
    switch (code) {
    case COMBINE_REPLACE:
        return "arg0";
    case COMBINE_MODULATE:
        return "(arg0 * arg1)";
    case COMBINE_ADD:
        return "(arg0 + arg1)";
    case COMBINE_ADD_SIGNED:
        return "(arg0 + arg1 - 0.5)";
    case COMBINE_INTERPOLATE:
        return "(arg1 + arg2 * (arg0 - arg1))";
    case COMBINE_SUBTRACT:
        return "(arg0 - arg1)";
    case COMBINE_DOT3_RGB:
    case COMBINE_DOT3_RGBA:
        return "4.0*dot(arg0.rgb - 0.5, arg1.rgb - 0.5)";
    default:
        assertThat(false, "shader key: a combiner function is 6 to 13");
        return "";
    }
}

void emitCombineExpression(const ProgramKey &key, uint32_t unit, strbuf *out)
{
    const CombineBlock &block = key.state.combine[unit];
    const char *rgb = combineFunction(block.envRgb);
    // GL_DOT3_RGBA writes alpha too, whatever the alpha function says.
    if (block.envRgb == COMBINE_DOT3_RGBA || block.envRgb == block.envAlpha) {
        strbuf_print(out, "    currentColor.rgba = vec4(%s);\n", rgb);
    } else {
        strbuf_print(out, "    currentColor.rgb = vec3(%s);\n", rgb);
        strbuf_print(out, "    currentColor.a = %s.a;\n", combineFunction(block.envAlpha));
    }
    if (block.scaled)
        strbuf_print(out, "    currentColor.rgba *= gles_TexEnvColorScale[%i];\n", static_cast<int>(unit));
    strbuf_cat(out, "    currentColor = clamp(currentColor, 0.0, 1.0);\n\n");
}

} // namespace

void emitCombine(const ProgramKey &key, uint32_t unit, strbuf *out)
{
    strbuf_cat(out, "    // GL_COMBINE\n");
    emitCombineArgs(key, unit, out);
    emitCombineExpression(key, unit, out);
}
