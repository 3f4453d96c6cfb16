include $(sort $(wildcard $(BR2_EXTERNAL_HEARTH_PATH)/package/*/*.mk))
