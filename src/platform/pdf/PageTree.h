#pragma once

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <stop_token>
#include <vector>

namespace quillfern::pdf {

/// The pages of a document in their order.
struct PageTree
{
    std::vector<QPDFObjectHandle> pages;    ///< each an indirect dictionary, and each another one
    bool isAsWritten = true;                ///< nothing had to be put right
    std::vector<QPDFObjectHandle> unusable; ///< what stands in the place of a page and is no dictionary
};

/// Reads the page tree and puts it right: types, counts, parents, pages that are named twice (the second is
/// made a page of its own). A tree with a loop, with branches that are named twice, that is nested beyond all
/// reason or has no root is replaced by a flat one with the same pages; what they inherit becomes their own.
/// Throws Failure for a tree that names its pages again and again, Cancelled once `stop` is stopped.
[[nodiscard]] PageTree readPageTree(QPDF& document, const std::stop_token& stop = {});

} // namespace quillfern::pdf
