#pragma once

#include "batch/Job.h"
#include "batch/JobFinding.h"
#include "batch/SourceLooks.h"

#include <stop_token>
#include <vector>

namespace quillfern {

/// Where the runner and the window differ.
struct CheckRules
{
    /// A job without stamps, or with an empty one, is refused; otherwise people are asked: the job makes
    /// plain copies.
    bool mustStamp = false;
    bool makesOutputFolder = false; ///< one that is missing is made without asking
};

/// Looks at a planned job before anything is written, and changes nothing. Any thread that has a
/// QGuiApplication. The findings are a forecast: the files may be others when the job begins.
class JobCheck
{
  public:
    /// The job is borrowed.
    explicit JobCheck(const Job& job, CheckRules rules = {}) : job_(job), rules_(rules) {}

    /// All findings, worst first; of a part of a job, those that concern its files. Looks into every file of
    /// the list, on all cores; of each file that has a page, the first page is held against the stamps.
    /// Throws Cancelled once `stop` is stopped.
    [[nodiscard]] std::vector<JobFinding> findings(const std::stop_token& stop = {}) const;

    /// The findings about the stamps alone, which take no time. The window calls this before a job that is
    /// not checked.
    [[nodiscard]] std::vector<JobFinding> ofStamps() const;

  private:
    void addOutputFolder(std::vector<JobFinding>& findings) const;
    void addCopies(const std::vector<SourceLook>& looks, const std::stop_token& stop,
                   std::vector<JobFinding>& findings) const;
    void addNames(std::vector<JobFinding>& findings) const;
    void addSources(const std::vector<SourceLook>& looks, std::vector<JobFinding>& findings) const;
    void addPages(const std::vector<SourceLook>& looks, std::vector<JobFinding>& findings) const;
    void addRoom(const std::vector<SourceLook>& looks, std::vector<JobFinding>& findings) const;

    const Job& job_;
    CheckRules rules_;
};

} // namespace quillfern
