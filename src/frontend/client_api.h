// SPDX-License-Identifier: MIT
// What EGL calls: the client-API table and the surface records.
#pragma once

#include "frontend/gl_headers.h"

#include "client_api_table.h"

/// Fills the caller's table in slot order, binding the backend on first use. A null table: nothing. When the backend
/// cannot be bound the table is left as it was.
TRL20_EXPORT void oglGetClientAPIFunctions(void *table);

/// A surface record of one zeroed word; null without memory.
TRL20_EXPORT void *gliCreateSurface(void);
/// Frees what gliCreateSurface made.
TRL20_EXPORT void gliDestroySurface(void *surface);
