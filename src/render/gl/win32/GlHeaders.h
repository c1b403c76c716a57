// The system's OpenGL header needs its own way of declaring functions.
#pragma once

#include <windows.h>

#include <GL/gl.h>
#include <GL/glu.h>

#undef near
#undef far
