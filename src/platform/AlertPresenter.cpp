#include "AlertPresenter.h"

#include <atomic>

namespace {
std::atomic<AlertPresenter *> g_shared{nullptr};
}

AlertPresenter *AlertPresenter::shared()
{
    return g_shared.load();
}

void AlertPresenter::setShared(AlertPresenter *presenter)
{
    g_shared.store(presenter);
}
