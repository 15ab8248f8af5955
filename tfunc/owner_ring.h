#ifndef TARN_TFUNC_OWNER_RING_H
#define TARN_TFUNC_OWNER_RING_H

/// @file
/// Membership in the group of objects that own something together.

namespace tarn {

/// One member of a ring of owners, alone to begin with. The ring stands for their count; it needs
/// no memory of its own, so joining cannot fail.
class OwnerRing {
 public:
  OwnerRing() = default;
  OwnerRing(const OwnerRing&) = delete;
  OwnerRing& operator=(const OwnerRing&) = delete;

  /// Becomes one of the owners that `member` is one of. It must have been alone.
  void Join(OwnerRing& member) {
    previous_ = &member;
    next_ = member.next_;
    next_->previous_ = this;
    member.next_ = this;
  }

  /// Is alone again; true when it was already, so that nobody owns what it leaves.
  bool Leave() {
    const bool wasAlone = next_ == this;
    previous_->next_ = next_;
    next_->previous_ = previous_;
    previous_ = this;
    next_ = this;
    return wasAlone;
  }

 private:
  OwnerRing* previous_ = this;
  OwnerRing* next_ = this;
};

}  // namespace tarn

#endif
