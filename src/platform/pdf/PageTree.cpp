#include "platform/pdf/PageTree.h"

#include "platform/system/Cancellation.h"

#include <array>
#include <cstddef>
#include <memory>
#include <set>

namespace quillfern::pdf {

namespace {

/// Each becomes a page of its own, with its own content.
constexpr int mostCopies = 10'000;
/// qpdf walks a tree by recursion.
constexpr std::size_t deepestTree = 100;

constexpr std::array<const char*, 4> inheritable = {"/MediaBox", "/CropBox", "/Resources", "/Rotate"};
using Inherited = std::array<QPDFObjectHandle, inheritable.size()>;

bool isInner(QPDFObjectHandle node)
{
    return node.getKey("/Kids").isArray() && !node.isDictionaryOfType("/Page");
}

class TreeReader
{
  public:
    TreeReader(QPDF& document, const std::stop_token& stop) : document_(document), stop_(stop) {}

    PageTree run()
    {
        QPDFObjectHandle catalogue = document_.getRoot();
        QPDFObjectHandle root = rootOf(catalogue);
        enter(root, {});
        while (!branches_.empty())
            step();
        if (!asItShouldBe_) {
            tree_.isAsWritten = false;
            flatten(root);
        }
        return std::move(tree_);
    }

  private:
    struct Branch
    {
        QPDFObjectHandle node;
        QPDFObjectHandle kids;
        int next = 0;
        std::size_t pagesBefore = 0;
        std::shared_ptr<const Inherited> inherited; ///< by the pages below
    };

    void set(QPDFObjectHandle node, const char* key, const QPDFObjectHandle& value)
    {
        node.replaceKey(key, value);
        tree_.isAsWritten = false;
    }

    /// The root of the tree, which the catalogue names afterwards. Some files name the first page instead.
    QPDFObjectHandle rootOf(QPDFObjectHandle catalogue)
    {
        QPDFObjectHandle root = catalogue.getKey("/Pages");
        std::set<QPDFObjGen> seen;
        while (root.getKey("/Parent").isDictionary() && seen.insert(root.getObjGen()).second)
            root = root.getKey("/Parent");
        if (!root.isIndirect()) root = document_.makeIndirectObject(root);
        if (!root.isSameObjectAs(catalogue.getKey("/Pages"))) set(catalogue, "/Pages", root);
        if (!isInner(root)) {
            QPDFObjectHandle onlyPage = root;
            root = document_.makeIndirectObject(QPDFObjectHandle::newDictionary(
                {{"/Type", QPDFObjectHandle::newName("/Pages")},
                 {"/Kids", QPDFObjectHandle::newArray(std::vector<QPDFObjectHandle>{onlyPage})}}));
            set(catalogue, "/Pages", root);
        }
        return root;
    }

    void enter(const QPDFObjectHandle& node, const std::shared_ptr<const Inherited>& above)
    {
        Branch branch;
        branch.node = node;
        branch.kids = branch.node.getKey("/Kids");
        branch.pagesBefore = tree_.pages.size();
        auto inherited = above ? std::make_shared<Inherited>(*above) : std::make_shared<Inherited>();
        for (std::size_t i = 0; i < inheritable.size(); ++i) {
            QPDFObjectHandle own = branch.node.getKey(inheritable[i]);
            if (!own.isNull()) (*inherited)[i] = own;
        }
        branch.inherited = std::move(inherited);
        if (!branch.node.isDictionaryOfType("/Pages"))
            set(branch.node, "/Type", QPDFObjectHandle::newName("/Pages"));
        onPath_.insert(node.getObjGen());
        if (!branchesSeen_.insert(node.getObjGen()).second) {
            asItShouldBe_ = false;
            countCopy();
        }
        if (branches_.size() >= deepestTree) asItShouldBe_ = false;
        branches_.push_back(std::move(branch));
    }

    void step()
    {
        throwIfCancelled(stop_);
        Branch& branch = branches_.back();
        if (branch.next == branch.kids.getArrayNItems()) {
            leave();
            return;
        }
        const int index = branch.next++;
        QPDFObjectHandle kid = branch.kids.getArrayItem(index);
        if (!kid.isDictionary()) {
            tree_.unusable.push_back(kid);
            asItShouldBe_ = false;
            return;
        }
        if (onPath_.count(kid.getObjGen()) > 0 && kid.isIndirect()) { // a loop leads to no further page
            asItShouldBe_ = false;
            return;
        }
        if (!kid.isIndirect()) {
            kid = document_.makeIndirectObject(kid);
            branch.kids.setArrayItem(index, kid);
            tree_.isAsWritten = false;
        }
        if (isInner(kid)) {
            if (!kid.getKey("/Parent").isSameObjectAs(branch.node)) set(kid, "/Parent", branch.node);
            const auto inherited = branch.inherited;
            enter(kid, inherited); // `branch` is no longer valid
        } else {
            page(branch, index, kid);
        }
    }

    void page(Branch& branch, int index, QPDFObjectHandle kid)
    {
        if (!pagesSeen_.insert(kid.getObjGen()).second) {
            countCopy();
            kid = document_.makeIndirectObject(kid.shallowCopy());
            branch.kids.setArrayItem(index, kid);
            tree_.isAsWritten = false;
        }
        if (!kid.isDictionaryOfType("/Page")) set(kid, "/Type", QPDFObjectHandle::newName("/Page"));
        if (!kid.getKey("/Parent").isSameObjectAs(branch.node)) set(kid, "/Parent", branch.node);
        tree_.pages.push_back(kid);
        inherited_.push_back(branch.inherited);
    }

    void leave()
    {
        Branch& branch = branches_.back();
        const auto count = static_cast<long long>(tree_.pages.size() - branch.pagesBefore);
        QPDFObjectHandle stated = branch.node.getKey("/Count");
        if (!stated.isInteger() || stated.getIntValue() != count)
            set(branch.node, "/Count", QPDFObjectHandle::newInteger(count));
        onPath_.erase(branch.node.getObjGen());
        branches_.pop_back();
    }

    void countCopy()
    {
        if (++copies_ > mostCopies)
            throw Failure(
                {QT_TRANSLATE_NOOP("quillfern::Failure",
                                   "The document shows the same pages again and again, more than %1 times."),
                 {QString::number(mostCopies)}});
    }

    void flatten(QPDFObjectHandle root)
    {
        for (std::size_t i = 0; i < tree_.pages.size(); ++i) {
            throwIfCancelled(stop_);
            QPDFObjectHandle page = tree_.pages[i];
            page.replaceKey("/Parent", root);
            for (std::size_t k = 0; k < inheritable.size(); ++k) {
                QPDFObjectHandle value = (*inherited_[i])[k];
                if (value.isInitialized() && page.getKey(inheritable[k]).isNull())
                    page.replaceKey(inheritable[k], value);
            }
        }
        for (const char* key : inheritable)
            root.removeKey(key);
        root.removeKey("/Parent");
        root.replaceKey("/Kids", QPDFObjectHandle::newArray(tree_.pages));
        root.replaceKey("/Count", QPDFObjectHandle::newInteger(static_cast<long long>(tree_.pages.size())));
    }

    QPDF& document_;
    const std::stop_token& stop_;
    PageTree tree_;
    std::vector<std::shared_ptr<const Inherited>> inherited_; ///< what each page would inherit
    std::vector<Branch> branches_;
    std::set<QPDFObjGen> onPath_;
    std::set<QPDFObjGen> branchesSeen_;
    std::set<QPDFObjGen> pagesSeen_;
    int copies_ = 0;
    bool asItShouldBe_ = true;
};

} // namespace

PageTree readPageTree(QPDF& document, const std::stop_token& stop)
{
    return TreeReader(document, stop).run();
}

} // namespace quillfern::pdf
