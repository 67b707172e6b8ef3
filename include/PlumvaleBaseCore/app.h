// Umbrella header of the application frame subsystem.
#pragma once

#include <PlumvaleBaseCore/app/BAPP_Application.h>
#include <PlumvaleBaseCore/app/BAPP_Identity.h>
#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>
#include <PlumvaleBaseCore/app/PL_AppLock.h>
#include <PlumvaleBaseCore/app/PL_Mutex.h>
#include <PlumvaleBaseCore/app/UT_Node.h>
#include <PlumvaleBaseCore/app/UT_Progress.h>
#include <PlumvaleBaseCore/app/UT_Rect.h>
#include <PlumvaleBaseCore/app/UT_Share.h>
