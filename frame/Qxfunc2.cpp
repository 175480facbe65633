#include "framework/U_glo.h"
