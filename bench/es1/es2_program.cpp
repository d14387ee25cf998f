// SPDX-License-Identifier: MIT
#include "es1/es2_program.h"

#include "es1/camera.h"
#include "es1/content.h"

#include <glm/gtc/type_ptr.hpp>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr char kVertexText[] = R"(
attribute vec3 position;
varying vec4 shade;
#if RECTANGLE
uniform vec4 rectangle;
#endif
#if SKINNED
uniform mat4 bones[4];
attribute vec2 weights;
attribute vec2 boneNumbers;
#elif LIGHTS || FOG
uniform mat4 projection;
uniform mat4 modelView;
#else
uniform mat4 modelViewProjection;
#endif
#if LIGHTS
struct Light { vec4 position; vec4 diffuse; vec4 specular; };
uniform Light lights[LIGHTS];
uniform vec4 sceneAmbient;
uniform vec4 materialColour;
uniform vec4 materialSpecular;
uniform float shininess;
uniform mat3 normalMatrix;
attribute vec3 normal;
#elif VERTEX_COLOUR
attribute vec4 colour;
#else
uniform vec4 colour;
#endif
#if TEXTURE0 || TEXTURE1
attribute vec2 coord;
varying vec2 texel;
#endif
#if FOG
uniform vec2 fogEndAndScale;
varying float clear;
#endif

void main()
{
#if RECTANGLE
    gl_Position = modelViewProjection * vec4(position.xy * rectangle.zw + rectangle.xy, position.z, 1.0);
#elif SKINNED
    gl_Position = weights.x * (bones[int(boneNumbers.x)] * vec4(position, 1.0)) +
                  weights.y * (bones[int(boneNumbers.y)] * vec4(position, 1.0));
#elif LIGHTS || FOG
    vec4 eye = modelView * vec4(position, 1.0);
    gl_Position = projection * eye;
#else
    gl_Position = modelViewProjection * vec4(position, 1.0);
#endif
#if FOG
    clear = (fogEndAndScale.x + eye.z) * fogEndAndScale.y;
#endif
#if TEXTURE0 || TEXTURE1
    texel = coord;
#endif
#if LIGHTS
    vec3 n = normalMatrix * normal;
    shade = sceneAmbient * materialColour;
    for (int i = 0; i < LIGHTS; ++i) {
        vec3 l = lights[i].position.xyz;
        if (lights[i].position.w != 0.0) l = normalize(l - eye.xyz);
        float towards = dot(n, l);
        if (towards > 0.0) {
            vec3 halfway = normalize(l + vec3(0.0, 0.0, 1.0));
            float shine = pow(max(dot(n, halfway), 0.0), shininess);
            shade += towards * lights[i].diffuse * materialColour + shine * lights[i].specular * materialSpecular;
        }
    }
    shade = vec4(clamp(shade.rgb, 0.0, 1.0), materialColour.a);
#else
    shade = colour;
#endif
}
)";

constexpr char kFragmentText[] = R"(
#ifdef GL_FRAGMENT_PRECISION_HIGH
precision highp float;
#else
precision mediump float;
#endif
varying vec4 shade;
#if TEXTURE0 || TEXTURE1
varying vec2 texel;
#endif
#if TEXTURE0
uniform sampler2D texture0;
#endif
#if TEXTURE1
uniform sampler2D texture1;
#endif
#if FOG
uniform vec3 fogColour;
varying float clear;
#endif

void main()
{
    vec4 fragment = shade;
#if TEXTURE0
    fragment *= texture2D(texture0, texel);
#endif
#if TEXTURE1
    fragment *= texture2D(texture1, texel);
#endif
#if FOG
    fragment.rgb = mix(fogColour, fragment.rgb, clamp(clear, 0.0, 1.0));
#endif
    gl_FragColor = fragment;
}
)";

std::string defines(const Features &features)
{
    const auto define = [](const char *name, int value) {
        return "#define " + std::string(name) + " " + std::to_string(value) + "\n";
    };
    return define("LIGHTS", features.lights) + define("TEXTURE0", features.textures & 1) +
           define("TEXTURE1", features.textures >> 1) + define("VERTEX_COLOUR", features.vertexColour) +
           define("FOG", features.fog) + define("SKINNED", features.skinned) + define("RECTANGLE", features.rectangle);
}

void attach(GLuint program, GLenum type, const std::string &text)
{
    const GLuint shader = glCreateShader(type);
    const char *source = text.c_str();
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    glAttachShader(program, shader);
    glDeleteShader(shader);
    char log[1000] = "";
    glGetShaderInfoLog(shader, sizeof(log), nullptr, log);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled) return;
    std::fprintf(stderr, "es2bench: a shader does not compile: %s\n", log);
    std::exit(1);
}

GLint locate(const Es2Program &program, const std::string &name)
{
    return glGetUniformLocation(program.name, name.c_str());
}

void loadLights(const Es2Program &program, int lights)
{
    for (int i = 0; i < lights; ++i) {
        const std::string light = "lights[" + std::to_string(i) + "].";
        glUniform4fv(locate(program, light + "position"), 1, kLights[i].position);
        glUniform4fv(locate(program, light + "diffuse"), 1, kLights[i].diffuse);
        glUniform4fv(locate(program, light + "specular"), 1, kLights[i].specular);
    }
    glUniform4fv(locate(program, "sceneAmbient"), 1, kSceneAmbient);
    glUniform4fv(locate(program, "materialSpecular"), 1, kSpecular);
    glUniform1f(locate(program, "shininess"), kShininess);
    glUniform4fv(program.materialColour, 1, kMaterialColours[0]);
    glUniformMatrix3fv(program.normalMatrix, 1, GL_FALSE, glm::value_ptr(glm::mat3(1.0f)));
}

void loadConstants(const Es2Program &program, const Features &features)
{
    glUseProgram(program.name);
    glUniformMatrix4fv(program.projection, 1, GL_FALSE, glm::value_ptr(projectionMatrix()));
    glUniformMatrix4fv(program.modelView, 1, GL_FALSE, glm::value_ptr(viewMatrix()));
    glUniformMatrix4fv(program.modelViewProjection, 1, GL_FALSE, glm::value_ptr(projectionMatrix() * viewMatrix()));
    glUniform4f(program.colour, 1.0f, 1.0f, 1.0f, 1.0f);
    glUniform1i(locate(program, "texture0"), 0);
    glUniform1i(locate(program, "texture1"), 1);
    glUniform2f(locate(program, "fogEndAndScale"), kFogEnd, 1.0f / (kFogEnd - kFogStart));
    glUniform3fv(locate(program, "fogColour"), 1, kFogColour);
    if (features.lights) loadLights(program, features.lights);
}

} // namespace

Es2Program makeProgram(const Features &features)
{
    Es2Program program = {};
    program.name = glCreateProgram();
    attach(program.name, GL_VERTEX_SHADER, defines(features) + kVertexText);
    attach(program.name, GL_FRAGMENT_SHADER, defines(features) + kFragmentText);
    constexpr const char *kAttributes[] = {"position", "normal", "coord", "colour", "weights", "boneNumbers"};
    for (GLuint i = 0; i < std::size(kAttributes); ++i)
        glBindAttribLocation(program.name, i, kAttributes[i]);
    glLinkProgram(program.name);

    program.modelViewProjection = locate(program, "modelViewProjection");
    program.projection = locate(program, "projection");
    program.modelView = locate(program, "modelView");
    program.normalMatrix = locate(program, "normalMatrix");
    program.materialColour = locate(program, "materialColour");
    program.colour = locate(program, "colour");
    program.rectangle = locate(program, "rectangle");
    program.bones = locate(program, "bones");
    loadConstants(program, features);
    return program;
}
