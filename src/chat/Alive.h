#pragma once
// Tells code that let other events run whether its object is still there. The object holds an `Alive`; a
// procedure that may ask the user something, or pumps, holds a `Watch` on the stack and looks at it before it
// goes on. One thread, so watches end in the reverse of their order.

namespace talvora {

class Alive {
  public:
    Alive() = default;
    Alive(const Alive&) = delete;
    Alive& operator=(const Alive&) = delete;
    ~Alive() {
        for (Watch* watch = innermost_; watch != nullptr; watch = watch->outer_) watch->object_ = nullptr;
    }

    class Watch {
      public:
        explicit Watch(Alive& object) : object_(&object), outer_(object.innermost_) {
            object.innermost_ = this;
        }
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;
        ~Watch() {
            if (object_ != nullptr) object_->innermost_ = outer_;
        }
        bool gone() const { return object_ == nullptr; }

      private:
        friend class Alive;
        Alive* object_;
        Watch* outer_;
    };

  private:
    Watch* innermost_ = nullptr;
};

}  // namespace talvora
