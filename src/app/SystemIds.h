// Internal: process and kernel thread identifiers of the calling thread.
#pragma once

namespace plumvale {

long currentProcessId();
long currentKernelThreadId();

} // namespace plumvale
