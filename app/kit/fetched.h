// Fetched: a job that has come back. It is released when this goes, however the sub ends;
// the body can be read in the turn in which the sub was woken. One owner, main thread.
#pragma once

#include "runtime/net/httpjob.h"

namespace varlo {

using namespace kes;

class Fetched {
 public:
  Fetched(Ref<kes_httpjob> job, Text document)
      : job_(std::move(job)), document_(std::move(document)) {}
  Fetched(Fetched&&) noexcept = default;
  Fetched& operator=(Fetched&& o) noexcept {
    release();
    job_ = std::move(o.job_);
    document_ = std::move(o.document_);
    return *this;
  }
  ~Fetched() { release(); }

  kes_httpjob* operator->() const { return job_.get(); }
  // What the log calls the document: the last piece of its address.
  const Text& document() const { return document_; }
  // The job released, for another request.
  Ref<kes_httpjob> release() {
    if (job_) job_->_release();
    return std::move(job_);
  }

 private:
  Ref<kes_httpjob> job_;
  Text document_;
};

}  // namespace varlo
