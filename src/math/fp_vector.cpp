// SPDX-License-Identifier: MIT
#include "math/fp_vector.h"

#include "math/fp_scalar_inline.h"
#include "math/matrix_inline.h"

void fp_vec3_mul(const float *a, const float *b, float *out)
{
    for (uint32_t i = 0; i < 3; ++i)
        out[i] = a[i] * b[i];
}

void fp_vec4_mul(const float *a, const float *b, float *out)
{
    storeColumn(out, loadColumn(a) * loadColumn(b));
}

void fp_vec3_smul(const float *v, float s, float *out)
{
    for (uint32_t i = 0; i < 3; ++i)
        out[i] = v[i] * s;
}

void fp_vec4_smul(const float *v, float s, float *out)
{
    storeColumn(out, loadColumn(v) * s);
}

void fp_vec3_smadd(const float *v, float s, float *acc)
{
    for (uint32_t i = 0; i < 3; ++i)
        acc[i] = acc[i] + s * v[i];
}

void fp_vec4_smadd(const float *v, float s, float *acc)
{
    storeColumn(acc, loadColumn(acc) + loadColumn(v) * s);
}

void fp_vec4_madd(const float *a, const float *b, float *acc)
{
    storeColumn(acc, loadColumn(acc) + loadColumn(a) * loadColumn(b));
}

void fp_vec3_cross(const float *a, const float *b, float *out)
{
    const float x = a[1] * b[2] - a[2] * b[1];
    const float y = a[2] * b[0] - a[0] * b[2];
    const float z = a[0] * b[1] - a[1] * b[0];
    out[0] = x;
    out[1] = y;
    out[2] = z;
}

float fp_vec3_dotp(const float *a, const float *b)
{
    return (a[1] * b[1] + a[0] * b[0]) + a[2] * b[2];
}

float fp_vec4_dotp(const float *a, const float *b)
{
    return ((a[1] * b[1] + a[0] * b[0]) + a[2] * b[2]) + a[3] * b[3];
}

void fp_vec3_normalize(float *v)
{
    const float length = roundedRoot(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    const float factor = reciprocalOrZero(length);
    for (uint32_t i = 0; i < 3; ++i)
        v[i] = v[i] * factor;
}

void fp_vec3_xform3(const float *m, const float *v, float *out)
{
    storeThree(out, combineThree(loadColumns(m), Column{v[0], v[1], v[2], 0.0f}));
}

void fp_vec3_xform4(const float *m, const float *v, float *out)
{
    const MatrixColumns columns = loadColumns(m);
    storeThree(out, combineThree(columns, Column{v[0], v[1], v[2], 0.0f}) + columns.c[3]);
}

void fp_vec4_xform4(const float *m, const float *v, float *out)
{
    storeColumn(out, combineFour(loadColumns(m), loadColumn(v)));
}

float _fp_matrix_rowdot3(const float *p, const float *v)
{
    return rowDot3(p, v);
}

float _fp_matrix_rowdot4(const float *p, const float *v)
{
    return rowDot3(p, v) + p[12] * v[3];
}

void fp_vec3_xform4_normalize(const float *m, const float *v, float *out)
{
    const float w = rowDot3(m + 3, v) + m[15];
    const float q = 1.0f / w;
    const float x = q * (rowDot3(m, v) + m[12]);
    const float y = q * (rowDot3(m + 1, v) + m[13]);
    out[0] = x;
    out[1] = y;
}

void fp_vec4_xform4_normalize(const float *m, const float *v, float *out)
{
    const float q = 1.0f / _fp_matrix_rowdot4(m + 3, v);
    const float x = q * _fp_matrix_rowdot4(m, v);
    const float y = q * _fp_matrix_rowdot4(m + 1, v);
    out[0] = x;
    out[1] = y;
}
