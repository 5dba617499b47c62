#include "platform/pdf/EnclosedContent.h"

#include "platform/pdf/PdfPageBox.h"

#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFNumberTreeObjectHelper.hh>
#include <set>

namespace quillfern::pdf {

namespace {

/// Makes a kid of a structure element, where it is marked content of the page, marked content of the form.
class StructureMove
{
  public:
    StructureMove(const QPDFObjectHandle& page, const QPDFObjectHandle& form,
                  const QPDFObjectHandle& elements)
        : page_(page), form_(form), elements_(elements)
    {
    }

    void run()
    {
        std::set<QPDFObjGen> seen;
        for (int i = 0; i < elements_.getArrayNItems(); ++i) {
            QPDFObjectHandle element = elements_.getArrayItem(i);
            if (element.isDictionary() && seen.insert(element.getObjGen()).second) moveKids(element);
        }
    }

  private:
    void moveKids(QPDFObjectHandle element)
    {
        QPDFObjectHandle kids = element.getKey("/K");
        if (!kids.isArray()) {
            element.replaceKey("/K", moved(kids, element));
            return;
        }
        for (int i = 0; i < kids.getArrayNItems(); ++i)
            kids.setArrayItem(i, moved(kids.getArrayItem(i), element));
    }

    QPDFObjectHandle moved(QPDFObjectHandle kid, QPDFObjectHandle element)
    {
        const bool isReference = kid.isDictionary() && kid.getKey("/MCID").isInteger();
        QPDFObjectHandle number = isReference ? kid.getKey("/MCID") : kid;
        if (!number.isInteger() || !belongs(number.getIntValue(), element)) return kid;
        QPDFObjectHandle page = isReference && kid.hasKey("/Pg") ? kid.getKey("/Pg") : element.getKey("/Pg");
        if (page.isDictionary() && !page.isSameObjectAs(page_)) return kid;
        if (isReference && kid.hasKey("/Stm")) return kid; // marked content of another form
        return QPDFObjectHandle::newDictionary({{"/Type", QPDFObjectHandle::newName("/MCR")},
                                                {"/Pg", page_},
                                                {"/Stm", form_},
                                                {"/MCID", number}});
    }

    /// Whether the page's marked content with this number is the element's.
    bool belongs(long long number, QPDFObjectHandle element)
    {
        return number >= 0 && number < elements_.getArrayNItems() &&
               elements_.getArrayItem(static_cast<int>(number)).isSameObjectAs(element);
    }

    QPDFObjectHandle page_;
    QPDFObjectHandle form_;
    QPDFObjectHandle elements_;
};

/// A new stream is its dictionary until the document is written (NewObjects).
QPDFObjectHandle dictionaryOf(QPDFObjectHandle stream)
{
    return stream.isStream() ? stream.getDict() : stream;
}

/// ISO 32000-1, 14.7.4.4: the key into the parent tree goes with the content.
void moveStructure(QPDF& document, QPDFObjectHandle page, QPDFObjectHandle form)
{
    QPDFObjectHandle key = page.getKey("/StructParents");
    if (!key.isInteger()) return;
    dictionaryOf(form).replaceKey("/StructParents", key);
    page.removeKey("/StructParents");
    QPDFObjectHandle structure = document.getRoot().getKey("/StructTreeRoot");
    QPDFObjectHandle parents = structure.isDictionary() ? structure.getKey("/ParentTree") : structure;
    if (!parents.isDictionary()) return;
    QPDFObjectHandle elements;
    try {
        if (QPDFNumberTreeObjectHelper(parents, document, false).findObject(key.getIntValue(), elements) &&
            elements.isArray())
            StructureMove(page, form, elements).run();
    } catch (const QPDFExc&) {
        return; // a tree that is none has nothing to be moved
    }
}

std::string freeName(QPDFObjectHandle names)
{
    std::string name = "/QfPage";
    for (int n = 1; names.isDictionary() && names.hasKey(name); ++n)
        name = "/QfPage" + std::to_string(n);
    return name;
}

QPDFObjectHandle boxOf(QPDFObjectHandle page)
{
    const QRectF box = PdfPageBox(page).mediaBox();
    return QPDFObjectHandle::newFromRectangle(
        QPDFObjectHandle::Rectangle(box.left(), box.top(), box.right(), box.bottom()));
}

} // namespace

void makeForm(QPDF& document, QPDFObjectHandle page, QPDFObjectHandle content)
{
    QPDFObjectHandle resources = inheritedAttribute(page, "/Resources");
    if (!resources.isDictionary()) resources = QPDFObjectHandle::newDictionary();
    QPDFObjectHandle dictionary = dictionaryOf(content);
    dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    dictionary.replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
    dictionary.replaceKey("/BBox", boxOf(page));
    dictionary.replaceKey("/Resources", resources);
    moveStructure(document, page, content);
}

std::string formSurroundings(QPDFObjectHandle page)
{
    if (page.getKey("/StructParents").isInteger()) return {};
    return boxOf(page).unparse() + inheritedAttribute(page, "/Resources").unparse();
}

std::string drawForm(QPDFObjectHandle page, QPDFObjectHandle form)
{
    QPDFObjectHandle resources = inheritedAttribute(page, "/Resources");
    QPDFObjectHandle own =
        resources.isDictionary() ? resources.shallowCopy() : QPDFObjectHandle::newDictionary();
    QPDFObjectHandle forms = own.getKey("/XObject");
    forms = forms.isDictionary() ? forms.shallowCopy() : QPDFObjectHandle::newDictionary();
    const std::string name = freeName(forms);
    forms.replaceKey(name, form);
    own.replaceKey("/XObject", forms);
    page.replaceKey("/Resources", own);
    return "q\n" + name + " Do\nQ\n";
}

} // namespace quillfern::pdf
