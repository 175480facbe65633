#include "db/Database.h"
