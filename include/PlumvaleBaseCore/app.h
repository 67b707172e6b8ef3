// Umbrella header of the application frame subsystem.
#pragma once

#include <PlumvaleBaseCore/app/BAPP_Application.h>
#include <PlumvaleBaseCore/app/BAPP_Identity.h>
#include <PlumvaleBaseCore/app/PL_Mutex.h>
