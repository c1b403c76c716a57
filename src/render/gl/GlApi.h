// The OpenGL 1.1 and GLU headers, wherever the system keeps them.
#pragma once

#ifdef _WIN32
#include "render/gl/win32/GlHeaders.h"
#else
#include <GL/gl.h>
#include <GL/glu.h>
#endif

// Younger than the headers that every system has.
#ifndef GL_CLAMP_TO_EDGE
#define GL_CLAMP_TO_EDGE 0x812F
#endif
