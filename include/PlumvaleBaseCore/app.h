// Umbrella header of the application frame subsystem.
#pragma once

#include <PlumvaleBaseCore/app/B3D_Framework.h>
#include <PlumvaleBaseCore/app/BAPP_Application.h>
#include <PlumvaleBaseCore/app/BAPP_Arguments.h>
#include <PlumvaleBaseCore/app/BAPP_CoreApplication.h>
#include <PlumvaleBaseCore/app/BAPP_Identity.h>
#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>
#include <PlumvaleBaseCore/app/CU_TerminationCleaner.h>
#include <PlumvaleBaseCore/app/OSW_ExternalEvents.h>
#include <PlumvaleBaseCore/app/OSW_Lang.h>
#include <PlumvaleBaseCore/app/PLUG_Interfaces.h>
#include <PlumvaleBaseCore/app/PL_AppLock.h>
#include <PlumvaleBaseCore/app/PL_DeviceContext.h>
#include <PlumvaleBaseCore/app/PL_Mutex.h>
#include <PlumvaleBaseCore/app/PL_PostMessage.h>
#include <PlumvaleBaseCore/app/PL_Timer.h>
#include <PlumvaleBaseCore/app/PL_Window.h>
#include <PlumvaleBaseCore/app/ST_Params.h>
#include <PlumvaleBaseCore/app/UT_DynKey.h>
#include <PlumvaleBaseCore/app/UT_Id.h>
#include <PlumvaleBaseCore/app/UT_Node.h>
#include <PlumvaleBaseCore/app/UT_Progress.h>
#include <PlumvaleBaseCore/app/UT_Rect.h>
#include <PlumvaleBaseCore/app/UT_Share.h>
#include <PlumvaleBaseCore/app/UT_TimeUnits.h>
