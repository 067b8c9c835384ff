// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/Folder.hpp"

#include "shared/Common/Files/detail/NodeInside.hpp"

namespace tonewright {

void Folder::setExpanded(bool value) {
    File::setExpanded(value);
    for (const auto& child : children) child->setExpanded(value);
}

void Folder::makeExpandedList(const std::shared_ptr<File>& self, FileList& list) {
    list.push_back(self);
    if (!_expanded()) return;
    for (const auto& child : children) child->makeExpandedList(child, list);
}

void Folder::find(const ItemIdentifier& identifier, const std::shared_ptr<File>& self,
                  std::shared_ptr<File>& found) {
    File::find(identifier, self, found);
    for (const auto& child : children) {
        if (found) return;
        NodeInside::find(*child, identifier, child, found);
    }
}

} // namespace tonewright
