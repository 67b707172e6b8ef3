// B3D_Framework: the singleton slot and the base framework that does nothing.
#include <PlumvaleBaseCore/app/B3D_Framework.h>

#include <cstdio>
#include <memory>

namespace {

std::unique_ptr<B3D_Framework>& slot() {
    static std::unique_ptr<B3D_Framework> framework;
    return framework;
}

} // namespace

B3D_SceneManager::~B3D_SceneManager() = default;

B3D_Framework::~B3D_Framework() = default;

void B3D_Framework::init(int, char**) {}

void B3D_Framework::initThreading() {}

B3D_SceneManager* B3D_Framework::createSceneManager() {
    return nullptr;
}

B3D_Framework* B3D_Framework::instance() {
    if (!slot()) slot().reset(new B3D_Framework);
    return slot().get();
}

bool B3D_Framework::setInstance(B3D_Framework* framework) {
    if (slot()) {
        std::fputs("B3D_Framework::setInstance: Request to set a second B3D_Framework singleton",
                   stdout);
        return false;
    }
    slot().reset(framework);
    return framework != nullptr;
}
