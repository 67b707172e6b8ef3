// The progress interfaces' destructors, so their virtual tables live in the library.
#include <PlumvaleBaseCore/app/UT_Progress.h>

UT_Progress::~UT_Progress() = default;

UT_DoubleProgress::~UT_DoubleProgress() = default;
