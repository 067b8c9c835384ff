// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A directory in a tree: a node that owns an ordered list of others. Used from one thread at a time.
#pragma once

#include "shared/Common/Files/File.hpp"

#include <memory>
#include <vector>

namespace tonewright {

class Folder final : public File {
  public:
    /// The children, in the order in which they were attached. Each refers back to this folder as its owner;
    /// such a cycle stays until somebody breaks it.
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
