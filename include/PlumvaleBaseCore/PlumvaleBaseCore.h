// Umbrella header of the whole PlumvaleBaseCore library.
#pragma once

#include <PlumvaleBaseCore/version.h>

#include <PlumvaleBaseCore/app.h>
#include <PlumvaleBaseCore/files.h>
#include <PlumvaleBaseCore/math.h>
#include <PlumvaleBaseCore/numerics.h>
#include <PlumvaleBaseCore/text.h>
