#include "default/pipeline/announcements.h"

#include <iterator>
#include <utility>

namespace tarvo::skarnvisor {

namespace {

thread_local AnnouncementScope *innermost = nullptr;

}  // namespace

AnnouncementScope::AnnouncementScope() : m_outer(std::exchange(innermost, this)) {}

AnnouncementScope::~AnnouncementScope() {
  innermost = m_outer;
  if (m_outer != nullptr) {
    std::move(m_held.begin(), m_held.end(), std::back_inserter(m_outer->m_held));
    return;
  }
  for (const auto &announcement : m_held) announcement();
}

void AnnouncementScope::announce(std::function<void()> announcement) {
  if (innermost != nullptr)
    innermost->m_held.push_back(std::move(announcement));
  else
    announcement();
}

}  // namespace tarvo::skarnvisor
