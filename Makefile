# Thin driver over CMake.
#   make demo   build the library and run the bundled example
#   make test   build and run the tests: release build (labels unit, data, data-large),
#               then an ASan+UBSan build (unit, data)
#   make test-huge   qap15 by the dual and the free method (label data-huge)
#   make bench  netlib benchmark table (bench/netlib/README.md); bench-lu, bench-mps, bench-presolve

BUILD      ?= build/release
ASAN_BUILD ?= build/asan
JOBS       ?= $(shell nproc 2>/dev/null || echo 2)
CTEST_ARGS ?= --output-on-failure -j $(JOBS)
# libopenblas0-serial becomes the system's BLAS and LAPACK (Debian's alternatives): the
# dense tail of the LU factorisation runs LAPACK's dgetrf, whose dgemm is several times
# faster there than in the reference BLAS; the serial build starts no threads of its own.
DEB_PACKAGES := cmake g++ make libgtest-dev liblapack-dev libblas-dev libopenblas0-serial zlib1g-dev

.PHONY: all deps configure build demo test test-release test-large test-huge test-asan bench bench-presolve bench-lu bench-mps clean

all: build

# Install what is missing from Debian when we are root; otherwise say what is missing.
deps:
	@missing=""; for p in $(DEB_PACKAGES); do \
	  dpkg -s $$p >/dev/null 2>&1 || missing="$$missing $$p"; done; \
	if [ -n "$$missing" ]; then \
	  if [ "$$(id -u)" = 0 ]; then \
	    echo "installing:$$missing"; \
	    DEBIAN_FRONTEND=noninteractive apt-get update -qq && \
	    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $$missing; \
	  else echo "missing Debian packages:$$missing (run as root or install them)"; exit 1; fi; \
	fi

configure: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release >/dev/null

build: configure
	cmake --build $(BUILD) -j $(JOBS)

demo: build
	$(BUILD)/example_solve_lp

test-release: build
	cd $(BUILD) && ctest $(CTEST_ARGS) -L '^(unit|data|data-large)$$'

test-large: build
	cd $(BUILD) && ctest $(CTEST_ARGS) -L '^data-large$$'

# qap15 by the dual and the free method takes tens of minutes: not part of `make test`,
# which must stay well inside CI's time; run by hand.  (qap15 by the primal, with the
# default presolve that leaves it whole, is in data-large, started first.)
test-huge: build
	cd $(BUILD) && ctest $(CTEST_ARGS) -L '^data-huge$$'

test-asan: deps
	cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKORVA_SANITIZE=ON >/dev/null
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	  ctest $(CTEST_ARGS) -L '^(unit|data)$$'

test: test-release test-asan

# Benchmarks print tables; the netlib one compares with clp and glpsol when installed.
bench: build
	bench/netlib/run.sh $(BUILD)/kxsolve

bench-presolve: build
	bench/presolve/run.sh $(BUILD)/kxsolve

bench-lu: build
	$(BUILD)/bench_lu

bench-mps: build
	$(BUILD)/bench_mps

clean:
	rm -rf build
