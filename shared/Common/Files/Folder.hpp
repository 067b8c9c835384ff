// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A directory in a tree: a node with an ordered list of child nodes. One thread at a time.
#pragma once

#include "shared/Common/Files/File.hpp"

#include <memory>
#include <vector>

namespace tonewright {

class Folder final : public File {
  public:
    /// The children, in the order in which they were added. Each child has a strong reference to this folder,
    /// so a tree is released only after these cycles have been broken.
    std::vector<std::shared_ptr<File>> children;

    void setExpanded(bool value) override;
    void makeExpandedList(const std::shared_ptr<File>& self, FileList& list) override;
    void dumpout() const override;

    [[nodiscard]] Folder* asFolder() noexcept override { return this; }
    [[nodiscard]] std::string_view className() const noexcept override { return "Folder"; }

  protected:
    void find(const ItemIdentifier& identifier, const std::shared_ptr<File>& self,
              std::shared_ptr<File>& found) override;
    void writeXML(TextWriter& writer, std::int64_t indent) const override;
    void dumpFields(const std::string& head, const std::string& attributesText) const override;
};

} // namespace tonewright
