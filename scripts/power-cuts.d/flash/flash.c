/*
 * A NOR flash of 16 MiB in reserved memory, for the file systems of flash. The emulator keeps that
 * memory in a file of the host, so what is written is there at once and stays when the power goes:
 * this flash has no cache. As on a chip, writing clears bits and only erasing sets them, block by
 * block; a cut in the middle leaves the part that was done.
 */
#include <linux/io.h>
#include <linux/module.h>
#include <linux/mtd/mtd.h>

#define FLASH_START 0xa000000
#define FLASH_SIZE (16 << 20)
#define FLASH_BLOCK (64 << 10)

static u8 *cells;

/* How much the flash has been used, for whoever asks. */
static ulong written; /* bytes */
static ulong erased; /* blocks */
module_param(written, ulong, 0444);
module_param(erased, ulong, 0444);

static int flash_erase(struct mtd_info *mtd, struct erase_info *block)
{
	memset(cells + block->addr, 0xff, block->len);
	erased += block->len / FLASH_BLOCK;
	return 0;
}

static int flash_read(struct mtd_info *mtd, loff_t from, size_t size, size_t *done, u_char *data)
{
	memcpy(data, cells + from, size);
	*done = size;
	return 0;
}

static int flash_write(struct mtd_info *mtd, loff_t to, size_t size, size_t *done, const u_char *data)
{
	size_t i;

	for (i = 0; i < size; i++)
		cells[to + i] &= data[i];
	written += size;
	*done = size;
	return 0;
}

static struct mtd_info flash = {
	.name = "flash",
	.owner = THIS_MODULE,
	.type = MTD_NORFLASH,
	.flags = MTD_CAP_NORFLASH,
	.size = FLASH_SIZE,
	.erasesize = FLASH_BLOCK,
	.writesize = 1,
	.writebufsize = 64,
	._erase = flash_erase,
	._read = flash_read,
	._write = flash_write,
};

static int __init flash_init(void)
{
	cells = memremap(FLASH_START, FLASH_SIZE, MEMREMAP_WB);
	if (!cells)
		return -ENOMEM;
	return mtd_device_register(&flash, NULL, 0);
}

module_init(flash_init);
MODULE_DESCRIPTION("NOR flash in reserved memory");
MODULE_LICENSE("Dual MIT/GPL");
