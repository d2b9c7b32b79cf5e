#include "orbelcast/snapshot_series.h"

#include "common/shown_text.h"
#include "orbelcast/picture_file.h"
#include "orbelcast/timed_name.h"
#include "stream/failure_text.h"
#include "stream/seconds.h"

namespace orbelcast {

SnapshotSeries::SnapshotSeries(const SeriesOptions& options)
    : options_(options), host_(StreamHost::Requests::kAsSent, options.stream.messages.verbose) {}

ExitStatus SnapshotSeries::Run() {
  host_.Pictures().decodes_all = true;
  host_.Run([this] {
    Configure(host_.Viewer(), options_.stream);
    if (options_.seconds) host_.EndAfter(*options_.seconds);
    due_ = Queue().Now();
    TakeNext();
  });
  if (unwritable_) return kBadUsage;
  return saved_ > 0 ? kWorked : kNoPictures;
}

void SnapshotSeries::TakeNext() {
  if (host_.HasEnded()) return;
  const auto every = Seconds(options_.every);
  // Those whose time passed while the program was held up are left out.
  while (due_ <= Queue().Now()) due_ += every;
  Queue().ArmTimer(due_ - Queue().Now(), [this] { TakeNext(); });
  if (fetching_) TellWhyNot();
  fetching_ = true;
  const std::uint64_t mine = ++number_;
  Queue().ArmTimer(Seconds(options_.time_out), [this, mine] {
    if (fetching_ && mine == number_) TellWhyNot();
  });
  host_.FetchOne(options_.stream, [this, mine] {
    if (!fetching_ || mine != number_ || host_.HasEnded()) return;
    if (host_.Pictures().Count() == counted_) return TellWhyNot();
    Save();
  });
}

void SnapshotSeries::Save() {
  fetching_ = false;
  counted_ = host_.Pictures().Count();
  const std::string file = NameOfNow(options_.name);
  const FrameBytes& picture = host_.Pictures().Newest();
  if (const std::string why = WritePicture(file, picture.Bytes()); !why.empty()) {
    on_problem(WhyUnwritten(file, why));
    unwritable_ = true;
    return host_.End();
  }
  ++saved_;
  on_saved(file, picture);
  if (saved_ == options_.pictures) host_.End();
}

// A picture that comes after all is another one's that was not asked for.
void SnapshotSeries::TellWhyNot() {
  const Failure failure = fetching_ && host_.Requested().Newest().kind == FailureKind::kNone
                              ? host_.LastFailure()
                              : host_.Requested().Newest();
  fetching_ = false;
  const bool given = !options_.stream.access.user.empty();
  on_problem(Problem::Of(failure, "no picture from " + MaskedAddress(options_.stream.url).Text() + ": " +
                                      TextOf(failure, {.user_was_given = given}).line));
}

}  // namespace orbelcast
