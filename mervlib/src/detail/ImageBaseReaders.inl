#pragma once

#include "Common/ImageBase.h"
