// oswSystemErrorText: the exported face of the platform layer's error texts.
#include <PlumvaleBaseCore/files/OSW_SystemError.h>

#include "platform/Platform.h"

std::string oswSystemErrorText(int code) {
    return plumvale::platform::errorText(code);
}

int oswLastSystemError() {
    return plumvale::platform::lastError();
}
