// Umbrella header of the text subsystem.
#pragma once

#include <PlumvaleBaseCore/text/ConvertUTF.h>
#include <PlumvaleBaseCore/text/UT_Encoding.h>
#include <PlumvaleBaseCore/text/UT_Format.h>
#include <PlumvaleBaseCore/text/UT_String.h>
#include <PlumvaleBaseCore/text/UT_Translate.h>
