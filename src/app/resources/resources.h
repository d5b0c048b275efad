// The program's resources.
#pragma once

#include "framework/core/resource.h"

extern const ResourceTables g_resources;
