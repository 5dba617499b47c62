#include "platform/pdf/ExtendedResources.h"

#include "platform/pdf/NewObjects.h"
#include "platform/pdf/PdfPageBox.h"
#include "platform/pdf/PlainDocument.h"
#include "platform/pdf/PlainParser.h"

#include <optional>
#include <string_view>

namespace quillfern::pdf {

namespace {

QPDFObjectHandle extended(QPDFObjectHandle present, const PdfPageResources& added)
{
    QPDFObjectHandle copy =
        present.isDictionary() ? present.shallowCopy() : QPDFObjectHandle::newDictionary();
    added.addTo(copy);
    return copy;
}

/// The names in a resource dictionary; nothing where they are not all in its text.
std::optional<std::vector<std::string_view>> namesIn(std::string_view resources)
{
    const auto dictionary = PlainDictionary::read(resources);
    if (!dictionary) return std::nullopt;
    std::vector<std::string_view> names;
    for (const std::string_view category : PdfPageResources::categories) {
        const std::string_view value = dictionary->value(category);
        if (value.empty()) continue;
        const auto own = PlainDictionary::read(value);
        if (!own) return std::nullopt;
        for (const PlainDictionary::Entry& entry : own->entries())
            names.push_back(entry.key);
    }
    return names;
}

/// A resource dictionary with more names; nothing where that cannot be done in its text.
std::optional<std::string> extendedText(std::string_view resources, const PdfPageResources& added)
{
    const auto dictionary = PlainDictionary::read(resources);
    if (!dictionary) return std::nullopt;
    const auto namesOf = [](const std::map<std::string, QPDFObjectHandle>& names) {
        std::string text;
        for (const auto& [name, object] : names)
            text += name + ' ' + QPDFObjectHandle(object).unparse() + ' ';
        return text;
    };
    std::string text = "<< ";
    for (const PlainDictionary::Entry& entry : dictionary->entries()) {
        text.append(entry.key) += ' ';
        const auto found = added.used().find(std::string(entry.key));
        if (found == added.used().end()) {
            text += entry.value;
        } else {
            if (!entry.value.starts_with("<<")) return std::nullopt;
            text.append(entry.value.substr(0, entry.value.size() - 2)) += ' ';
            text += namesOf(found->second) + ">>";
        }
        text += ' ';
    }
    for (const auto& [category, names] : added.used())
        if (dictionary->value(category).empty()) text += category + " << " + namesOf(names) + ">> ";
    return text + ">>";
}

} // namespace

QPDFObjectHandle ExtendedResources::shared(const QPDFObjGen& holder, const QPDFObjectHandle& present,
                                           const PdfPageResources& added)
{
    QPDFObjectHandle& result = shared_[std::pair(holder, added.signature())];
    if (result.isInitialized()) return result;
    QPDFObjectHandle copy = extended(present, added);
    QPDFObjectHandle& equal = equal_[copy.unparse()];
    if (!equal.isInitialized()) equal = objects_.add(copy);
    return result = equal;
}

QPDFObjectHandle ExtendedResources::with(const QPDFObjectHandle& page, const PdfPageResources& added)
{
    QPDFObjectHandle holder;
    QPDFObjectHandle present = inheritedAttribute(page, "/Resources", &holder);
    const bool isOwn = !present.isIndirect() && holder.isInitialized() && holder.isSameObjectAs(page);
    if (isOwn || !present.isDictionary()) return extended(present, added);
    return shared(present.isIndirect() ? present.getObjGen() : holder.getObjGen(), present, added);
}

QPDFObjectHandle ExtendedResources::of(const PlainPage& page)
{
    if (!page.resources) return QPDFObjectHandle::newNull();
    if (const auto number = plainReference(*page.resources)) return document_.getObject(*number, 0);
    if (page.resourcesOf == 0) return QPDFObjectHandle::parse(&document_, *page.resources, "resources");
    QPDFObjectHandle& handle = inherited_[page.resourcesOf];
    if (!handle.isInitialized()) handle = QPDFObjectHandle::parse(&document_, *page.resources, "resources");
    return handle;
}

PdfPageResources ExtendedResources::namesFor(const PlainPage& page)
{
    const auto number = page.resources ? plainReference(*page.resources) : std::nullopt;
    if (!number && page.resourcesOf == 0) {
        const auto names = page.resources ? namesIn(*page.resources) : std::vector<std::string_view>();
        return names ? PdfPageResources(*names) : PdfPageResources(of(page));
    }
    const int key = number.value_or(page.resourcesOf);
    const auto found = names_.find(key);
    if (found != names_.end()) return found->second;
    return names_.emplace(key, PdfPageResources(of(page))).first->second;
}

std::string ExtendedResources::with(const PlainPage& page, const PdfPageResources& added)
{
    const auto number = page.resources ? plainReference(*page.resources) : std::nullopt;
    if (!number && page.resourcesOf == 0) {
        const auto text = extendedText(page.resources ? *page.resources : "<<>>", added);
        return text ? *text : extended(of(page), added).unparse();
    }
    QPDFObjectHandle present = of(page);
    if (!present.isDictionary()) return extended(present, added).unparse();
    return shared(QPDFObjGen(number.value_or(page.resourcesOf), 0), present, added).unparse();
}

} // namespace quillfern::pdf
