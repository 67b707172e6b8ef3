// Umbrella header of the text subsystem.
#pragma once

#include <PlumvaleBaseCore/text/ConvertUTF.h>
#include <PlumvaleBaseCore/text/MSG_Text.h>
#include <PlumvaleBaseCore/text/TUBatchMessage.h>
#include <PlumvaleBaseCore/text/TUFileRef.h>
#include <PlumvaleBaseCore/text/TULex.h>
#include <PlumvaleBaseCore/text/TULock.h>
#include <PlumvaleBaseCore/text/TUMessage.h>
#include <PlumvaleBaseCore/text/TUSema.h>
#include <PlumvaleBaseCore/text/TUTeller.h>
#include <PlumvaleBaseCore/text/UT_Encoding.h>
#include <PlumvaleBaseCore/text/UT_Format.h>
#include <PlumvaleBaseCore/text/UT_LibraryTranslator.h>
#include <PlumvaleBaseCore/text/UT_String.h>
#include <PlumvaleBaseCore/text/UT_Translate.h>
