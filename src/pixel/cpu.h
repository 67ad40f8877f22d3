// Run-time choice of the instruction set. A family of kernels keeps its chosen functions in a KernelTable, which is
// filled when the library is loaded; tests and benchmarks lower the choice.
// SPDX-License-Identifier: MIT
#pragma once

namespace kx {

/// In rising order; each level includes the ones before it.
enum class CpuLevel { Portable, Sse2, Avx2, Avx512 };

/// What the processor and the operating system offer.
CpuLevel detectedCpuLevel();

/// The level in force: what was detected, or less where it was limited.
CpuLevel cpuLevel();

/// Lowers the level to at most `highest` (or raises it again) and has every kernel table choose anew. Not for use while
/// another thread draws.
void limitCpuLevel(CpuLevel highest);

/// A link of the list of all kernel tables.
class AnyKernelTable {
public:
  AnyKernelTable();
  AnyKernelTable(const AnyKernelTable&) = delete;
  AnyKernelTable& operator=(const AnyKernelTable&) = delete;

  static void selectAll(CpuLevel level);

protected:
  ~AnyKernelTable() = default;

private:
  virtual void select(CpuLevel level) = 0;
  AnyKernelTable* next_;
};

/// The chosen functions of one family of kernels: `Kernels` is a struct of function pointers, `choose` tells those of a
/// level. To be defined at namespace scope.
template <typename Kernels>
class KernelTable final : AnyKernelTable {
public:
  using Choose = Kernels (*)(CpuLevel level);

  explicit KernelTable(Choose choose) : choose_(choose), kernels_(choose(cpuLevel())) {}

  const Kernels& operator*() const { return kernels_; }
  const Kernels* operator->() const { return &kernels_; }

private:
  void select(CpuLevel level) override { kernels_ = choose_(level); }

  Choose choose_;
  Kernels kernels_;
};

}  // namespace kx
