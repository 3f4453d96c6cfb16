/*
 * A plugin of the emulator that counts the instructions which the machine executes: for each of its
 * processors those of programs and those of the kernel, in a file that can be read at any time.
 *
 *   qemu-system-arm -plugin instructions.so,into=FILE ...
 */
#include <fcntl.h>
#include <stdint.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

/* The emulator's interface, version 1, of which Debian has no header. */
typedef uint64_t plugin_id;
struct qemu_plugin_tb; /* a run of instructions, translated once */
void qemu_plugin_register_vcpu_tb_trans_cb(plugin_id id, void (*translated)(plugin_id, struct qemu_plugin_tb *));
void qemu_plugin_register_vcpu_tb_exec_cb(struct qemu_plugin_tb *run, void (*executed)(unsigned, void *),
					  int flags, void *data);
size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb *run);
uint64_t qemu_plugin_tb_vaddr(const struct qemu_plugin_tb *run);

__attribute__((visibility("default"))) int qemu_plugin_version = 1;

/* Modules begin here, 16 MiB below the kernel. */
static const uint64_t kernel_start = 0xbf000000;

enum { SIZE = 4096 };

struct counts {
	uint64_t programs;
	uint64_t kernel;
};

static struct counts *counts;

static void count_program(unsigned processor, void *instructions)
{
	counts[processor].programs += (uintptr_t)instructions;
}

static void count_kernel(unsigned processor, void *instructions)
{
	counts[processor].kernel += (uintptr_t)instructions;
}

static void translated(plugin_id id, struct qemu_plugin_tb *run)
{
	(void)id;
	qemu_plugin_register_vcpu_tb_exec_cb(
		run, qemu_plugin_tb_vaddr(run) < kernel_start ? count_program : count_kernel, 0,
		(void *)qemu_plugin_tb_n_insns(run));
}

int qemu_plugin_install(plugin_id id, const void *emulator, int argc, char **arguments)
{
	int file;

	(void)emulator;
	if (argc != 1 || strncmp(arguments[0], "into=", 5) != 0)
		return 1;
	file = open(arguments[0] + 5, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
	if (file < 0 || ftruncate(file, SIZE) != 0)
		return 1;
	counts = mmap(NULL, SIZE, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
	close(file);
	if (counts == MAP_FAILED)
		return 1;
	qemu_plugin_register_vcpu_tb_trans_cb(id, translated);
	return 0;
}
