#include "platform/pdf/PdfWriter.h"

#include "platform/pdf/DocumentChanges.h"
#include "platform/pdf/NewObjects.h"
#include "platform/store/AtomicFile.h"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

namespace quillfern::pdf {

namespace {

class FilePipeline final : public Pipeline
{
  public:
    explicit FilePipeline(store::AtomicFile& file) : Pipeline("output file", nullptr), file_(file) {}

    void write(unsigned char const* data, size_t length) override
    {
        file_.write(reinterpret_cast<const char*>(data), length);
    }
    void finish() override {}

  private:
    store::AtomicFile& file_;
};

} // namespace

void RewritingPdfWriter::write(QPDF& document, DocumentChanges& changes, NewObjects& objects,
                               const FileInput&, store::AtomicFile& target) const
{
    objects.materialise();
    FilePipeline pipeline(target);
    QPDFWriter writer(document);
    writer.setOutputPipeline(&pipeline);
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.setObjectStreamMode(qpdf_o_preserve);
    writer.setPreserveUnreferencedObjects(false);
    writer.setMinimumPDFVersion(changes.usesTransparency() ? "1.4" : "1.3");
    writer.write();
}

} // namespace quillfern::pdf
