#pragma once

#include "support/Tools.h"

namespace quillfern {

/// Writes a PDF file object by object, well-formed or not, as a test needs it.
class PdfBuilder
{
  public:
    /// Adds an object and returns its number; the first is 1, which has to be the catalogue.
    int add(const QByteArray& body);
    int addStream(const QByteArray& data, const QByteArray& entries = {});
    /// Keeps a number for an object whose body comes later.
    int reserve();
    void set(int number, const QByteArray& body);

    [[nodiscard]] QByteArray build(const QByteArray& trailerEntries = {}) const;

    [[nodiscard]] static QByteArray ref(int number) { return QByteArray::number(number) + " 0 R"; }

  private:
    QList<QByteArray> bodies_;
};

/// The beginning of a document with one page: its catalogue is object 1, its page tree 2, the page 3.
PdfBuilder onePage(const QByteArray& pageEntries, const QByteArray& treeEntries = {},
                   const QByteArray& catalogueEntries = {});

/// One page of simplePdf.
struct TestPage
{
    QByteArray content;                            ///< whole content stream; empty for none at all
    QByteArray entries = "/MediaBox[0 0 612 792]"; ///< entries of the page dictionary
};

/// A document of these pages, each with its own content and resources with Helvetica as /F1.
QByteArray simplePdf(const QList<TestPage>& pages, const QByteArray& catalogueEntries = {});

/// Content that shows `word` at a point of the page's own space.
QByteArray showWord(const QByteArray& word, double x, double y);

/// `count` pages that say Body1, Body2, ...
QByteArray numberedPdf(int count);

} // namespace quillfern
