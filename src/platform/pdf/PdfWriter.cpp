#include "platform/pdf/PdfWriter.h"

#include "platform/pdf/DocumentChanges.h"
#include "platform/pdf/LibraryErrors.h"
#include "platform/pdf/NewObjects.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Cancellation.h"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

namespace quillfern::pdf {

namespace {

class FilePipeline final : public Pipeline
{
  public:
    FilePipeline(store::AtomicFile& file, std::stop_token stop)
        : Pipeline("output file", nullptr), file_(file), stop_(std::move(stop))
    {
    }

    void write(unsigned char const* data, size_t length) override
    {
        // What is still in the pipelines in front of this one comes here while the exception passes through
        // their destructors, where another exception would end the program.
        if (failed_) return;
        interruptible([&] {
            failed_ = true;
            throwIfCancelled(stop_);
            file_.write(reinterpret_cast<const char*>(data), length);
            failed_ = false;
        });
    }
    void finish() override {}

  private:
    store::AtomicFile& file_;
    std::stop_token stop_;
    bool failed_ = false;
};

} // namespace

void RewritingPdfWriter::write(const EditedDocument& edited, store::AtomicFile& target,
                               std::stop_token stop) const
{
    edited.changes.noteRebuilt();
    edited.objects.materialise();
    FilePipeline pipeline(target, std::move(stop));
    QPDFWriter writer(edited.document);
    writer.setOutputPipeline(&pipeline);
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.setObjectStreamMode(qpdf_o_preserve);
    writer.setPreserveEncryption(encryption_ == Encryption::Kept);
    writer.setPreserveUnreferencedObjects(false);
    writer.setMinimumPDFVersion(edited.changes.usesTransparency() ? "1.4" : "1.3");
    writer.write();
}

} // namespace quillfern::pdf
