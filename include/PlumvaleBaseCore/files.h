// Umbrella header of the files subsystem.
#pragma once

#include <PlumvaleBaseCore/files/OSW_Dll.h>
#include <PlumvaleBaseCore/files/OSW_Execute.h>
#include <PlumvaleBaseCore/files/OSW_FileInfo.h>
#include <PlumvaleBaseCore/files/OSW_Pipe.h>
#include <PlumvaleBaseCore/files/OSW_SystemError.h>
#include <PlumvaleBaseCore/files/PL_FileSpec.h>
#include <PlumvaleBaseCore/files/PL_FileUtil.h>
#include <PlumvaleBaseCore/files/UT_Log.h>
#include <PlumvaleBaseCore/files/UT_Path.h>
#include <PlumvaleBaseCore/files/UT_RelPath.h>
#include <PlumvaleBaseCore/files/oswRemapPath.h>
#include <PlumvaleBaseCore/files/oswUtil.h>
#include <PlumvaleBaseCore/files/tufile.h>
