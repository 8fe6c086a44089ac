#include "batch/run_jobs.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <future>
#include <list>
#include <map>
#include <mutex>
#include <new>
#include <ostream>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

#include "base/cores.h"
#include "base/numbers.h"
#include "base/run_time_error.h"
#include "base/start_beside.h"
#include "base/whole_file.h"
#include "batch/arguments.h"
#include "batch/console.h"
#include "batch/page_report.h"
#include "codecs/file_format.h"
#include "codecs/picbuf.h"

namespace graphize {

namespace {

namespace fs = std::filesystem;

const char* ExtensionOf(TableFormat format) {
  switch (format) {
    case TableFormat::Csv:
      return ".csv";
    case TableFormat::Json:
      return ".json";
    case TableFormat::Project:
      return ".graphize";
    case TableFormat::Dat:
      break;
  }
  return ".dat";
}

bool IsStandardOutput(const fs::path& path) {
  return path == "-";
}

/// A file for each picture by the operand `target` of an option; none without it.
std::vector<fs::path> FilesFor(const std::string& option, const std::string& target,
                               const char* extension, const std::vector<fs::path>& pictures,
                               const std::vector<fs::path>& inputs) {
  if (target.empty()) return {};
  std::error_code ignored;
  const bool several = pictures.size() > 1;
  if (several && target == "-") throw UsageError(option + " -: several pictures need a folder");
  const bool folder =
      target != "-" && (several || target.ends_with('/') || fs::is_directory(target, ignored));
  std::set<FileIdentity> read;
  for (const auto* some : {&pictures, &inputs})
    for (const fs::path& input : *some)
      if (const auto identity = IdentityOf(input)) read.insert(*identity);
  std::vector<fs::path> files;
  std::map<fs::path, fs::path> pictureOf;  // of each file
  for (const fs::path& picture : pictures) {
    const fs::path stem = picture == "-" ? "stdin" : picture.stem();
    const fs::path file =
        folder ? fs::path(target) / fs::path(stem).concat(extension) : fs::path(target);
    const auto [twin, isNew] = pictureOf.emplace(file, picture);
    if (!isNew)
      throw UsageError("two pictures would be written to \"" + file.string() + "\": \"" +
                       twin->second.string() + "\" and \"" + picture.string() + "\"");
    if (const auto old = IdentityOf(file); old && read.contains(*old))
      throw UsageError(option + " would replace the input \"" + file.string() + "\"");
    files.push_back(file);
  }
  return files;
}

/// All that the workers share; what they say is said under the mutex.
class Run {
 public:
  Run(const std::vector<BatchStep>& steps, const std::vector<Job>& jobs, const RunOptions& options,
      const BatchStreams& streams)
      : steps_(steps),
        jobs_(jobs),
        options_(options),
        streams_(streams),
        outcomes_(jobs.size()),
        showsProgress_(streams.ErrIsTerminal && !options.Quiet && jobs.size() > 1) {}

  bool Work() {
    // One more than the cores it may use, while one waits for a decoder.
    const std::size_t wanted = options_.Workers > 0 ? options_.Workers : CoreCount() + 1;
    const std::size_t atOnce = std::min(wanted, jobs_.size());
    PrepareToDecode(DecodersReady::Usual);
    {
      std::vector<std::jthread> workers;
      try {
        for (std::size_t i = 1; i < atOnce; ++i)
          workers.emplace_back([=, this] { TakeJobs(atOnce); });
      } catch (const std::system_error&) {
        // The threads that the system gives do it all.
      } catch (const std::bad_alloc&) {
      }
      TakeJobs(atOnce);
    }
    for (std::size_t i = 0; i < jobs_.size(); ++i)
      if (outcomes_[i].Picture.empty()) NoteLost(i);
    const auto failed = std::ranges::count(outcomes_, false, &PageOutcome::IsDone);
    if (showsProgress_) streams_.Err << "\r\x1b[K" << std::flush;
    if (const std::string unfenced = DecodedWithinProgram(); !options_.Quiet && !unfenced.empty())
      Say(unfenced);
    const bool isReported = options_.Report.empty() || WriteReport();
    if (failed > 0 && jobs_.size() > 1)
      streams_.Err << "graphize: " << failed << " of " << jobs_.size()
                   << " pictures could not be done\n";
    return failed == 0 && isReported;
  }

 private:
  /// A page that is done but for its files.
  struct Page {
    JobResult Result;
    std::string Error;
    std::future<void> Finished = {};  // the first to go: it waits for the thread
  };

  /// While the tables of pages are flushed to the disk, which takes several in the time of one, the
  /// worker does the next ones. A worker alone keeps their order, and large ones do not gather.
  void TakeJobs(std::size_t workers) {
    constexpr std::size_t kFlushesOfAll = 12, kFlushes = 4, kLargeTable = 1 << 20;
    const std::size_t most =
        workers == 1 ? 1 : std::clamp<std::size_t>(kFlushesOfAll / workers, 1, kFlushes);
    std::list<Page> pages;
    const auto keep = [&](std::size_t count) {
      for (; pages.size() > count; pages.pop_front())
        if (pages.front().Finished.valid()) pages.front().Finished.get();
    };
    for (std::size_t i = next_++; i < jobs_.size(); i = next_++)
      static_cast<void>(ErrorOf([&] {
        Page& page = pages.emplace_back();
        page.Error = ErrorOf([&] { Make(jobs_[i], page.Result); });
        page.Result.Picture = {};
        keep(page.Result.Table.size() > kLargeTable ? 1 : most);
        page.Finished =
            StartBeside([this, i, &page] { static_cast<void>(ErrorOf([&] { Finish(i, page); })); });
      }));
    keep(0);
  }

  /// There was no memory to finish it, or to tell of it.
  void NoteLost(std::size_t i) {
    const JobResult none;
    outcomes_[i] = OutcomeOf(jobs_[i], none, "out of memory");
    Say(jobs_[i].Name + ": out of memory");
  }

  template <class Work>
  static std::string ErrorOf(const Work& work) {
    try {
      work();
    } catch (const RunTimeError& error) {
      return error.what();
    } catch (const std::bad_alloc&) {
      return "out of memory";
    } catch (const std::exception& error) {
      return std::string("unexpected error: ") + error.what();
    }
    return "";
  }

  void Finish(std::size_t i, Page& page) {
    const Job& job = jobs_[i];
    if (page.Error.empty()) page.Error = ErrorOf([&] { Deliver(job, page.Result); });
    PageOutcome outcome = OutcomeOf(job, page.Result, page.Error);
    page.Result = {};
    const std::scoped_lock lock(mutex_);
    ++done_;
    if (!page.Error.empty()) Say(job.Name + ": " + page.Error);
    outcomes_[i] = std::move(outcome);  // the last thing: without memory, it is told as lost
    ShowProgress();
  }

  static PageOutcome OutcomeOf(const Job& job, const JobResult& result, const std::string& error) {
    using How = PageOutcome::How;
    const auto& lie = result.Registration;
    How how = result.Doubt.empty() ? How::Done : How::Doubtful;
    if (!error.empty()) how = lie && !lie->Fits() ? How::Refused : How::Failed;
    return {job.Name, how, result.Points, lie, error.empty() ? result.Doubt : error};
  }

  void Make(const Job& job, JobResult& result) const {
    for (const fs::path& file : {job.Output, job.PictureOutput}) {
      std::error_code ignored;
      if (!options_.Force && !IsStandardOutput(file) && fs::exists(file, ignored))
        throw RunTimeError("\"" + file.string() + "\" exists already; see --force");
    }
    RunJob(steps_, job.Pictures, options_.Table, result);
    if (!job.PictureOutput.empty()) WritePicture(job.PictureOutput, result.Picture);
  }

  void Deliver(const Job& job, const JobResult& result) {
    if (IsStandardOutput(job.Output)) {
      const std::scoped_lock lock(mutex_);
      streams_.Out << result.Table << std::flush;
      if (!streams_.Out) throw RunTimeError("the standard output cannot be written");
    } else if (!job.Output.empty()) {
      if (const std::error_code error = Write(job.Output, result.Table))
        throw RunTimeError("\"" + job.Output.string() + "\" cannot be written: " + error.message());
    }
    if (!result.Doubt.empty() && options_.Table.Strict)
      throw RunTimeError("of the points that were written, some are doubtful: " + result.Doubt);
    if (options_.Quiet) return;
    const std::scoped_lock lock(mutex_);
    for (const std::string& note : result.Notes) Say(job.Name + ": " + note);
    if (!result.Doubt.empty()) Say(job.Name + ": " + result.Doubt);
  }

  bool WriteReport() {
    const std::string text = LowerCase(options_.Report.extension().string()) == ".json"
                                 ? ReportJson(outcomes_)
                                 : ReportCsv(outcomes_);
    const std::error_code error = Write(options_.Report, text);
    if (error) Say("\"" + options_.Report.string() + "\" cannot be written: " + error.message());
    return !error;
  }

  static void WritePicture(const fs::path& path, const Raster& picture) {
    std::error_code ignored;
    if (path.has_parent_path()) fs::create_directories(path.parent_path(), ignored);
    std::int16_t format = 0, option = 0;
    GetFileFormat(LowerCase(path.string()), format, option);
    try {
      SavePicture(path, format, option, picture);
    } catch (const RunTimeError& error) {
      throw RunTimeError(OneLine(error.what()));
    }
  }

  static std::error_code Write(const fs::path& path, const std::string& text) {
    std::error_code error;
    if (path.has_parent_path()) fs::create_directories(path.parent_path(), error);
    return error ? error : ReplaceWholeFile(path, text);
  }

  void Say(const std::string& text) {
    streams_.Err << (showsProgress_ ? "\r\x1b[K" : "") << "graphize: " << OneLine(text) << "\n";
  }

  void ShowProgress() {
    if (!showsProgress_) return;
    constexpr std::size_t kWidth = 30;
    const std::size_t full = kWidth * done_ / jobs_.size();
    streams_.Err << "\r[" << std::string(full, '#') << std::string(kWidth - full, '-') << "] "
                 << done_ << " of " << jobs_.size() << std::flush;
  }

  const std::vector<BatchStep>& steps_;
  const std::vector<Job>& jobs_;
  const RunOptions& options_;
  const BatchStreams& streams_;
  std::vector<PageOutcome> outcomes_;  // of each job
  const bool showsProgress_;
  std::mutex mutex_;
  std::atomic<std::size_t> next_ = 0;
  std::size_t done_ = 0;
};

}  // namespace

std::vector<Job> MakeJobs(const std::vector<fs::path>& pictures, const OutputNames& outputs,
                          const std::vector<fs::path>& inputs) {
  const std::vector<fs::path> tables =
      FilesFor("--output", outputs.Table, ExtensionOf(outputs.Format), pictures, inputs);
  const std::vector<fs::path> cleaned =
      FilesFor("--save-picture", outputs.Picture, ".tif", pictures, inputs);
  std::vector<Job> jobs;
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    const fs::path& picture = pictures[i];
    const std::string name = picture == "-" ? "standard input" : picture.string();
    const fs::path table = tables.empty() ? fs::path() : tables[i];
    const fs::path clean = cleaned.empty() ? fs::path() : cleaned[i];
    if (!clean.empty() && clean == table)
      throw UsageError("--output and --save-picture name the same file");
    jobs.push_back({name, {picture}, table, clean});
  }
  return jobs;
}

bool RunJobs(const std::vector<BatchStep>& steps, const std::vector<Job>& jobs,
             const RunOptions& options, const BatchStreams& streams) {
  return Run(steps, jobs, options, streams).Work();
}

}  // namespace graphize
